// Sixteen threads that use the library at once, in processes where nothing has used it before, and forks
// among them. Under the thread sanitizer every race ends it.
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <set>
#include <thread>

#include "message_builder.h"

// libc locks what tzset() shares where the sanitizer does not see it.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libc.so.6\n";
}

namespace {

using namespace velmora::test;

constexpr int thread_count = 16;

std::string bank_name(int (*find)(const char*, sepa_bank_t**), const char* text) {
    sepa_bank_t* bank = nullptr;
    const int result = find(text, &bank);
    const std::unique_ptr<sepa_bank_t, decltype(&std::free)> owner(bank, &std::free);
    return result == 1 ? bank->name : "none";
}

// The document from its number of payments on; its identification goes to `id`.
std::string written_document(std::string& id) {
    const Message message(sepa_new(SEPA_MSGTYPE_CTI));
    sepa_setIBAN(message.get(), own_iban);
    sepa_setBIC(message.get(), "hasp de");
    add(message, with(credit_transfer(), {{"name", "?"}}));
    std::string text = error(message) + document(message);
    id = contents(text, "MsgId").at(0);
    for (const std::string& used : {id + "-P1", id})
        text.erase(text.find(used), used.size());
    return text.substr(text.find("<NbOfTxs>"));
}

std::string statement() {
    const std::string file = "\r\n:20:R\r\n:25:10010010/1\r\n:28C:1/1\r\n:62F:C260101EUR1,00\r\n-";
    const std::unique_ptr<sepa_stmt_parser_t, decltype(&sepa_stmt_parser_free)> parser(
        sepa_stmt_parser_new(), &sepa_stmt_parser_free);
    sepa_stmt_parser_loadMemory(parser.get(), SEPA_STMT_FORMAT_MT940, file.data(), file.size());
    return sepa_stmt_parser_getStatement(parser.get())->account;
}

// What a thread does, beginning where no other does.
std::string use_everything(std::size_t thread, std::string& id) {
    const std::function<std::string()> uses[] = {
        [] { return std::to_string(sepa_iban_check(own_iban)); },
        [] { return std::to_string(sepa_iban_check("FR1420041010050500013M02606")); },
        [] { return bank_name(sepa_iban_getBank, own_iban); },
        [] { return bank_name(sepa_bic_getBank, "COBADEFF"); },
        [] {
            char iban[35];
            sepa_iban_convert("DE", "532013000", "37040044", iban, nullptr);
            return std::string(iban);
        },
        [&id] { return written_document(id); },
        statement,
        [] {
            libc_regex_init();
            return std::to_string(__atomic_load_n(&libc_regexec, __ATOMIC_RELAXED) != nullptr);
        },
    };
    std::string results[std::size(uses)], all;
    for (std::size_t i = 0; i < std::size(uses); ++i)
        results[(i + thread) % std::size(uses)] = uses[(i + thread) % std::size(uses)]();
    for (const std::string& result : results)
        all += result + "\n";
    return all;
}

bool threads_agree() {
    std::string results[thread_count], ids[thread_count];
    pthread_barrier_t start;
    pthread_barrier_init(&start, nullptr, thread_count);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < thread_count; ++i)
        threads.emplace_back([&, i] {
            pthread_barrier_wait(&start);
            results[i] = use_everything(i, ids[i]);
        });
    for (std::thread& thread : threads)
        thread.join();
    const bool good =
        std::set(results, results + thread_count).size() == 1 &&
        std::set(ids, ids + thread_count).size() == thread_count &&
        results[0].starts_with("1\n1\nCommerzbank\nCOMMERZBANK AG\nDE89370400440532013000\n<NbOfTxs>");
    if (!good) std::printf("threads disagree, or have the same message id:\n%s", results[0].c_str());
    return good;
}

// How a child ended that did this; one that hangs is killed.
int status_of_child(const std::function<bool()>& what) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);
        std::exit(what() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

// Whether a child of a process whose other threads are in the library can use it.
bool children_of_busy_threads_work() {
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            for (std::string id; !done;)
                use_everything(i, id);
        });
    bool good = true;
    for (int i = 0; i < 20; ++i)
        good &= status_of_child([] {
                    _exit(sepa_iban_check(own_iban) == 1 ? 0 : 1);
                    return true;
                }) == 0;
    done = true;
    for (std::thread& thread : threads)
        thread.join();
    if (!good) std::printf("a child failed or hung\n");
    return good;
}

} // namespace

int main() {
    for (int i = 0; i < 25; ++i) // each child begins cold
        if (status_of_child(threads_agree) != 0) return 1;
    return children_of_busy_threads_work() ? 0 : 1;
}
