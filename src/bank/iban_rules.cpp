#include "bank/iban_rules.h"

#include <iterator>

#include "bank/iban_rules_routines.h"

namespace velmora {
namespace {

constexpr IbanRule rules[] = {
    {0, standard_iban},
    {1, no_iban},
    {2, rule_2},
    {3, rule_3},
    {4, listed_accounts},
    {5, rule_5},
    {6, listed_accounts},
    {7, listed_accounts},
    {8, own_bank_code, "50020200"},
    {9, rule_9, "68351557"},
    {10, rule_10, "50050201", "50050222"},
    {11, rule_11},
    {12, own_bank_code, "50050000"},
    {13, own_bank_code, "30050000"},
    {14, own_bank_code, "30060601"},
    {15, listed_accounts},
    {16, listed_accounts},
    {17, listed_accounts},
    {18, listed_accounts},
    {19, own_bank_code, "50120383"},
    {20, rule_20},
    {21, rule_21, "36020030"},
    {22, listed_accounts},
    {23, listed_accounts},
    {24, listed_accounts},
    {25, own_bank_code, "60050101"},
    {26, accounts_listed_as_valid},
    {27, accounts_listed_as_valid},
    {28, own_bank_code, "25050180"},
    {29, rule_29},
    {30, accounts_listed_as_valid},
    {31, rule_31},
    {32, account_ranges_but_one}, // its list is empty
    {33, account_ranges},
    {34, account_ranges_but_one},
    {35, account_ranges_but_one},
    {36, rule_36, "21050000"},
    {37, own_bank_code, "30010700"},
    {38, own_bank_code, "28590075"},
    {39, own_bank_code, "28020050"},
    {40, own_bank_code, "68052328"},
    {41, rule_41},
    {42, rule_42},
    {43, rule_43, "66650085", "60651070"},
    {44, listed_accounts_valid_or_not},
    {45, standard_iban},
    {46, own_bank_code, "31010833"},
    {47, rule_47},
    {48, own_bank_code, "36010200"},
    {49, rule_49},
    {50, own_bank_code, "28550000"},
    {51, listed_accounts_valid_or_not},
    {52, rule_52},
    {53, rule_53},
    {54, rule_54},
    {55, own_bank_code, "25410200"},
    {56, rule_56},
    {57, own_bank_code, "66010200", "50810900"},
};

constexpr bool rows_stand_at_their_numbers() {
    for (std::size_t i = 0; i < std::size(rules); ++i)
        if (rules[i].number != i) return false;
    return true;
}
static_assert(std::size(rules) == 58 && rows_stand_at_their_numbers());

} // namespace

int apply_iban_rule(unsigned rule, char* iban, ConversionContext& context) {
    return rule < std::size(rules) ? rules[rule].routine(iban, context, rules[rule]) : 0;
}

} // namespace velmora
