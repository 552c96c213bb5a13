// Prints the bytes of memory that one direct debit document takes: its payments in the message, its text, and
// the most that was in use.
//
//   document_memory PAYMENTS
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "payments.h"
#include "velmora.h"

namespace {

// A line of /proc/self/status, in bytes.
double status(const char* field) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.rfind(field, 0) == 0) return std::strtod(line.c_str() + std::strlen(field), nullptr) * 1024;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    using namespace payments;
    if (argc != 2) return 2;
    filled_message(SEPA_MSGTYPE_DDI, 1, 1); // what is used once does not count
    const double at_start = status("VmRSS:");
    const Message message = filled_message(SEPA_MSGTYPE_DDI, std::atol(argv[1]), 4);
    const double records = status("VmRSS:") - at_start;
    const Text text(sepa_toXML(message.get()), &std::free);
    if (!text) return 1;
    std::printf("%.0f %zu %.0f\n", records, std::strlen(text.get()), status("VmHWM:") - at_start);
}
