// Sixteen threads that use the library at once, in processes where nothing has used it before, and forks
// among them. Under the thread sanitizer every race ends it.
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "velmora.h"

// libc locks what tzset() shares where the sanitizer does not see it.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libc.so.6\n";
}

namespace {

constexpr int thread_count = 16;

std::string number(int value) {
    return std::to_string(value) + "\n";
}

std::string bank_name(int (*find)(const char*, sepa_bank_t**), const char* text) {
    sepa_bank_t* bank = nullptr;
    const int result = find(text, &bank);
    const std::string name = bank == nullptr ? "" : bank->name;
    std::free(bank);
    return number(result) + name;
}

// The document without its own identification and time of creation; the identification goes to `id`.
std::string document(std::string& id) {
    sepa_t* message = sepa_new(SEPA_MSGTYPE_CTI);
    const char* payment[] = {"name",   "Max",  "iban",     "DE89370400440532013000",
                             "amount", "1.00", "addrTown", "Berlin",
                             "addrCC", "DE",   nullptr};
    std::string text;
    text += number(sepa_setIBAN(message, "DE21200505500506356823"));
    text += number(sepa_setBIC(message, "hasp de"));
    text += sepa_getError(message);
    text += number(sepa_setName(message, "Erika"));
    text += number(sepa_add(message, payment));
    char* written = sepa_toXML(message);
    const std::string xml = written == nullptr ? "" : written;
    std::free(written);
    sepa_free(message);
    const std::size_t begin = xml.find("<MsgId>"), end = xml.find("</MsgId>");
    if (end == std::string::npos) return "no document";
    id = xml.substr(begin, end - begin);
    return text + xml.substr(xml.find("<NbOfTxs>"), xml.find("<PmtInfId>") - xml.find("<NbOfTxs>"));
}

std::string statement() {
    const std::string file =
        "\r\n:20:R\r\n:25:10010010/1\r\n:28C:1/1\r\n:60F:C260101EUR1,00\r\n:62F:C260101EUR1,00\r\n-";
    sepa_stmt_parser_t* parser = sepa_stmt_parser_new();
    std::string text =
        number(sepa_stmt_parser_loadMemory(parser, SEPA_STMT_FORMAT_MT940, file.data(), file.size()));
    if (const sepa_stmt_t* first = sepa_stmt_parser_getStatement(parser)) text += first->account;
    sepa_stmt_parser_free(parser);
    return text;
}

// What a thread does, beginning where no other does.
std::string use_everything(int thread, std::string& id) {
    const std::function<std::string()> uses[] = {
        [] { return number(sepa_iban_check("DE89370400440532013000")); },
        [] { return number(sepa_iban_check("FR1420041010050500013M02606")); },
        [] { return bank_name(sepa_iban_getBank, "DE89370400440532013000"); },
        [] { return bank_name(sepa_bic_getBank, "COBADEFF"); },
        [] {
            char iban[35];
            std::uint8_t status = 0;
            const int result = sepa_iban_convert("DE", "532013000", "37040044", iban, &status);
            return number(result) + iban;
        },
        [&id] { return document(id); },
        statement,
        [] {
            libc_regex_init();
            return number(__atomic_load_n(&libc_regexec, __ATOMIC_RELAXED) != nullptr);
        },
    };
    constexpr int count = sizeof uses / sizeof *uses;
    std::string results[count];
    for (int i = 0; i < count; ++i)
        results[(i + thread) % count] = uses[(i + thread) % count]();
    std::string all;
    for (const std::string& result : results)
        all += result + "\n";
    return all;
}

bool threads_agree() {
    std::string results[thread_count], ids[thread_count];
    std::barrier start(thread_count);
    std::vector<std::thread> threads;
    for (int i = 0; i < thread_count; ++i)
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            results[i] = use_everything(i, ids[i]);
        });
    for (std::thread& thread : threads)
        thread.join();
    const bool good =
        std::set(results, results + thread_count).size() == 1 &&
        std::set(ids, ids + thread_count).size() == thread_count &&
        results[0].starts_with("1\n\n1\n\n1\nCommerzbank\n1\nCOMMERZBANK AG\n1\nDE89370400440532013000\n");
    if (!good) std::printf("threads disagree, or have the same message id:\n%s", results[0].c_str());
    return good;
}

// Whether a child of a process whose other threads are in the library can use it.
bool children_of_busy_threads_work() {
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (std::string id; !done;)
                use_everything(i, id);
        });
    bool good = true;
    for (int i = 0; i < 20; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(10); // what hangs is killed
            _exit(sepa_iban_check("DE89370400440532013000") == 1 ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        good &= status == 0;
    }
    done = true;
    for (std::thread& thread : threads)
        thread.join();
    if (!good) std::printf("a child failed or hung\n");
    return good;
}

} // namespace

int main() {
    for (int i = 0; i < 25; ++i) { // each child begins cold
        const pid_t child = fork();
        if (child == 0) std::exit(threads_agree() ? 0 : 1);
        int status = -1;
        waitpid(child, &status, 0);
        if (status != 0) return 1;
    }
    return children_of_busy_threads_work() ? 0 : 1;
}
