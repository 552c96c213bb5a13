// What the codes of ISO 20022 for statuses and their reasons mean.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "velmora.h"

namespace velmora {
namespace {

struct Code {
    char code[5];
    char text[90];
};

// In the order of the codes.
constexpr Code codes[] = {
    {"AC01", "account number wrong"},
    {"AC04", "account closed"},
    {"AC06", "account blocked"},
    {"AC13", "the debtor's account is a consumer's, which a B2B direct debit must not be collected from"},
    {"ACCP", "accepted after checks of the customer"},
    {"ACSC", "settled"},
    {"ACSP", "accepted, settlement in process"},
    {"ACTC", "technically valid"},
    {"ACWC", "accepted with a change"},
    {"AG01", "not allowed on this account"},
    {"AG02", "operation code wrong or not allowed"},
    {"AM01", "amount is zero"},
    {"AM02", "amount larger than allowed"},
    {"AM03", "currency not accepted"},
    {"AM04", "not enough money in the account"},
    {"AM05", "the same payment was sent before"},
    {"AM09", "amount is not the one agreed on"},
    {"AM10", "sum of the amounts differs from the control sum"},
    {"BE01", "name does not fit the account"},
    {"BE04", "creditor's address missing or wrong"},
    {"BE05", "creditor identifier wrong"},
    {"BE06", "the bank does not know this customer"},
    {"BE07", "debtor's address missing or wrong"},
    {"CNOR", "the creditor's bank cannot be reached"},
    {"CURR", "currency wrong"},
    {"CUST", "asked for by the customer"},
    {"DNOR", "the debtor's bank cannot be reached"},
    {"DT01", "date wrong"},
    {"DUPL", "sent twice"},
    {"ED05", "settlement failed"},
    {"FF01", "file format wrong"},
    {"FF05", "local instrument wrong"},
    {"FOCR", "returned after a recall"},
    {"FRAD", "fraud"},
    {"MD01", "no mandate"},
    {"MD02", "mandate data missing or wrong"},
    {"MD06", "debtor asked for the money back"},
    {"MD07", "debtor has died"},
    {"MS02", "refused by the customer"},
    {"MS03", "refused without a reason"},
    {"NARR", "see the text"},
    {"PART", "partly accepted: see the payments"},
    {"PDNG", "pending"},
    {"RC01", "bank identifier wrong"},
    {"RCVC", "payee check: the name fits"},
    {"RCVD", "received"},
    {"RF01", "reference is not unique"},
    {"RJCT", "refused: see the reason"},
    {"RR01", "debtor's account or identification missing (law)"},
    {"RR02", "debtor's name or address missing (law)"},
    {"RR03", "creditor's name or address missing (law)"},
    {"RR04", "legal reasons"},
    {"RVCM", "payee check of a group: some names fit"},
    {"RVMC", "payee check: the name nearly fits, see the text"},
    {"RVNA", "payee check: not possible"},
    {"RVNM", "payee check: the name does not fit"},
    {"SL01", "the debtor has told the bank not to pay this"},
    {"TD01", "sent too late"},
    {"TECH", "technical problem"},
    {"TM01", "sent after the bank's closing time"},
    {"UPAY", "payment was not due"},
    {"XT13", "an element that is not supported"},
    {"XT33", "data incomplete"},
};

} // namespace
} // namespace velmora

const char* sepa_reason_text(const char* code) {
    using namespace velmora;
    if (code == nullptr) return nullptr;
    const auto less = [](const Code& row, const char* wanted) { return std::strcmp(row.code, wanted) < 0; };
    const Code* const found = std::lower_bound(std::begin(codes), std::end(codes), code, less);
    return found != std::end(codes) && std::strcmp(found->code, code) == 0 ? found->text : nullptr;
}
