// The check-digit methods of the Deutsche Bundesbank, a row each. method_rows.h says what rows are made of,
// single_methods.h has the computations that occur once. Weights go leftwards from the position given first.
//
// Deliberate: accounts that a method exempts from the check are "not checkable", also where the published
// text counts them as right: the IBAN rules take only checked ones for valid. Method 95 is the exception.
#pragma once

#include "checkdigit/single_methods.h"

namespace velmora {

// --- Variants that several methods have. ---

constexpr auto stem = digit_sums<10, P8, weights_from(P7, 2, 1, 2, 1, 2, 1)>; // then a sub-account
constexpr auto six_digit_stem = digit_sums<10, P10, weights_from(P9, 2, 1, 2, 1, 2, 1)>;
constexpr auto five_digit_stem = digit_sums<10, P10, weights_from(P9, 2, 1, 2, 1, 2)>;
constexpr auto mod10_five_digits = products<10, P10, weights_from(P9, 2, 1, 2, 1, 2)>;
constexpr auto mod7_five_digits = products<7, P10, weights_from(P9, 2, 3, 4, 5, 6)>;
constexpr auto mod7_six_digits = products<7, P10, weights_from(P9, 2, 3, 4, 5, 6, 7)>;
constexpr auto mod11_seven_digits = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8)>;
// Accounts with a 9 in position 3: over positions 9 to 3, then over all nine.
constexpr auto ledger_account =
    first_of<mod11<P10, only_ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8)>,
             mod11<P10, only_ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10)>>;

constexpr auto has_99_at_3 = all<has<P3, 9>, has<P4, 9>>;

// --- 00 to 09 ---

constexpr auto method_00 = digit_sums<10, P10, weights_00>;
constexpr auto method_01 = products<10, P10, weights_from(P9, 3, 7, 1, 3, 7, 1, 3, 7, 1)>;
constexpr auto method_02 = mod11<P10, ten_is_invalid, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 2)>;
constexpr auto method_03 = products<10, P10, weights_00>;
constexpr auto method_04 = mod11<P10, ten_is_invalid, weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4)>;
constexpr auto method_05 = products<10, P10, weights_from(P9, 7, 3, 1, 7, 3, 1, 7, 3, 1)>;
constexpr auto method_06 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4)>;
constexpr auto method_07 = mod11<P10, ten_is_invalid, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10)>;
constexpr auto method_08 = unchecked_if<number_below<60000>, method_00>;
constexpr auto method_09 = not_checkable;

// --- 10 to 19 ---

constexpr auto method_10 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10)>;
constexpr auto method_11 = mod11<P10, ten_is_nine, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 10)>;
constexpr auto method_13 = first_of<stem, only_if<begins<0, 0>, six_digit_stem>>;
constexpr auto method_14 = mod11<P10, ten_is_invalid, weights_from(P9, 2, 3, 4, 5, 6, 7)>;
constexpr auto method_15 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5)>;
constexpr auto method_16 = mod11<P10, ten_repeats_digit_before, weights_from(P9, 2, 3, 4, 5, 6, 7, 2, 3, 4)>;
constexpr auto method_17 = sum_less_one<P8, weights_from(P6, 1, 0, 1, 0, 1), weights_from(P7, 2, 0, 2, 0, 2)>;
constexpr auto method_18 = products<10, P10, weights_from(P9, 3, 9, 7, 1, 3, 9, 7, 1, 3)>;
constexpr auto method_19 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 1)>;

// --- 20 to 29 ---

constexpr auto method_20 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9, 3)>;
constexpr auto method_21 = repeated_digit_sum;
constexpr auto method_22 = products<10, P10, weights_from(P9, 3, 1, 3, 1, 3, 1, 3, 1, 3)>;
constexpr auto method_23 = mod11<P7, ten_repeats_digit_before, weights_from(P6, 2, 3, 4, 5, 6, 7)>;
constexpr auto method_24 = raised_products;
constexpr Weights weights_25 = weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9);
constexpr auto method_25 =
    when<has<P2, 8, 9>, mod11<P10, only_ten_is_zero, weights_25>, mod11<P10, ten_is_invalid, weights_25>>;
constexpr auto method_26 = when<begins<0, 0>, mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 2)>,
                                mod11<P8, ten_is_zero, weights_from(P7, 2, 3, 4, 5, 6, 7, 2)>>;
constexpr auto method_27 = when<has<P1, 0>, method_00, iterated_transformation>;
constexpr auto method_28 = mod11<P8, ten_is_zero, weights_from(P7, 2, 3, 4, 5, 6, 7, 8)>;
constexpr auto method_29 = iterated_transformation;

// --- 30 to 39 ---

constexpr auto method_30 = products<10, P10, weights_from(P9, 2, 1, 2, 1, 0, 0, 0, 0, 2)>;
constexpr auto method_31 = mod11_remainder<0, weights_from(P9, 9, 8, 7, 6, 5, 4, 3, 2, 1)>;
constexpr auto method_32 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7)>;
constexpr auto method_33 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6)>;
constexpr auto method_34 = mod11<P8, ten_is_zero, weights_from(P7, 2, 4, 8, 5, 10, 9, 7)>;
constexpr auto method_38 = mod11<P10, ten_is_zero, weights_from(P9, 2, 4, 8, 5, 10, 9)>;

// --- 40 to 49 ---

constexpr auto method_40 = mod11<P10, ten_is_zero, weights_from(P9, 2, 4, 8, 5, 10, 9, 7, 3, 6)>;
constexpr auto method_41 = when<has<P4, 9>, six_digit_stem, method_00>;
constexpr auto method_42 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 9)>;
constexpr auto method_43 = products<10, P10, weights_from(P9, 1, 2, 3, 4, 5, 6, 7, 8, 9)>;
constexpr auto method_44 = mod11<P10, ten_is_zero, weights_from(P9, 2, 4, 8, 5, 10)>;
constexpr auto method_45 = unchecked_if<any<has<P1, 0>, has<P5, 1>, begins<4, 8>>, method_00>;
constexpr auto method_46 = mod11<P8, ten_is_zero, weights_from(P7, 2, 3, 4, 5, 6)>;
constexpr auto method_47 = mod11<P9, ten_is_zero, weights_from(P8, 2, 3, 4, 5, 6)>;
constexpr auto method_48 = mod11<P9, ten_is_zero, weights_from(P8, 2, 3, 4, 5, 6, 7)>;
constexpr auto method_49 = first_of<method_00, method_01>;

// --- 50 to 59 (52 and 53 need the bank code, see the end) ---

constexpr auto method_50 =
    first_of<mod11<P7, ten_is_zero, weights_from(P6, 2, 3, 4, 5, 6, 7)>, only_if<begins<0, 0, 0>, method_32>>;
constexpr auto method_51 =
    when<has<P3, 9>, ledger_account, first_of<method_32, method_33, six_digit_stem, mod7_five_digits>>;
constexpr auto method_55 = mod11<P10, ten_is_zero, weights_from(P9, 2, 3, 4, 5, 6, 7, 8, 7, 8)>;
constexpr auto method_56 = mod11_never_zero;
constexpr auto method_57 = by_first_two_digits;
constexpr auto method_58 = mod11<P10, ten_is_invalid, weights_from(P9, 2, 3, 4, 5, 6)>;
constexpr auto method_59 = unchecked_if<begins<0, 0>, method_00>;

// --- 60 to 69 ---

constexpr auto method_60 = digit_sums<10, P10, weights_from(P9, 2, 1, 2, 1, 2, 1, 2)>;
constexpr auto seven_digits_61 = digit_sums<10, P8, weights_from(P7, 2, 1, 2, 1, 2, 1, 2)>;
constexpr auto nine_digits_61 = digit_sums<10, P8, weights_from(P10, 2, 1, 0, 2, 1, 2, 1, 2, 1, 2)>;
constexpr auto method_61 = when<has<P9, 8>, nine_digits_61, seven_digits_61>;
constexpr auto method_63 = only_if<has<P1, 0>, first_of<stem, only_if<begins<0, 0, 0>, six_digit_stem>>>;
constexpr auto method_64 = mod11<P7, ten_is_zero, weights_from(P6, 2, 4, 8, 5, 10, 9)>;
constexpr auto method_65 = when<has<P9, 9>, nine_digits_61, seven_digits_61>;
constexpr auto method_66 = only_if<has<P1, 0>, unchecked_if<has<P2, 9>, mod11_zero_and_one_exchanged>>;
constexpr auto method_67 = seven_digits_61;
constexpr auto ten_digits_68 = only_if<has<P4, 9>, six_digit_stem>;
constexpr auto six_to_nine_digits_68 =
    first_of<digit_sums<10, P10, weights_from(P9, 2, 1, 2, 1, 2, 1, 2, 1)>,
             digit_sums<10, P10, weights_from(P9, 2, 1, 2, 1, 2, 0, 0, 1)>>;
constexpr auto method_68 =
    when<has_length<10>, ten_digits_68,
         unchecked_if<begins<0, 4>, only_if<has_length<6, 7, 8, 9>, six_to_nine_digits_68>>>;

// --- 70 to 79 ---

constexpr auto method_71 = mod11<P10, ten_is_one, weights_from(P7, 1, 2, 3, 4, 5, 6)>;
constexpr auto five_digits_mod7_73 = digit_sums<7, P10, weights_from(P9, 2, 1, 2, 1, 2)>;
constexpr auto method_73 =
    when<has<P3, 9>, ledger_account, first_of<six_digit_stem, five_digit_stem, five_digits_mod7_73>>;
constexpr auto method_74 = first_of<method_00, only_if<has_length<6>, half_decade>, method_04>;
constexpr auto nine_digits_75 = when<has<P2, 9>, digit_sums<10, P8, weights_from(P7, 2, 1, 2, 1, 2)>,
                                     digit_sums<10, P7, weights_from(P6, 2, 1, 2, 1, 2)>>;
constexpr auto method_75 = when<has_length<9>, nine_digits_75, only_if<has_length<6, 7>, five_digit_stem>>;
constexpr auto method_76 = stem_or_shifted_stem;
constexpr auto method_78 = unchecked_if<has_length<8>, method_00>;

// --- 80 to 89 ---

constexpr auto method_81 = when<has<P3, 9>, ledger_account, method_32>;
constexpr auto method_84 =
    when<has<P3, 9>, ledger_account, first_of<method_33, mod7_five_digits, mod10_five_digits>>;
constexpr auto method_85 =
    when<has_99_at_3, mod11<P10, ten_is_invalid, weights_from(P9, 2, 3, 4, 5, 6, 7, 8)>,
         first_of<method_32, method_33, mod7_five_digits>>;
constexpr auto method_87 =
    when<has<P3, 9>, ledger_account, first_of<alternating_sum, method_33, mod7_five_digits, method_32>>;
constexpr auto method_88 = when<has<P3, 9>, mod11_seven_digits, method_32>;

// --- 90 to 99 ---

constexpr auto method_90 =
    when<has<P3, 9>, mod11_seven_digits,
         first_of<method_32, method_33, mod7_five_digits, products<9, P10, weights_from(P9, 2, 3, 4, 5, 6)>,
                  mod10_five_digits, products<7, P10, weights_from(P9, 2, 1, 2, 1, 2, 1)>>>;
constexpr auto method_91 = first_of<mod11<P7, ten_is_zero, weights_from(P6, 2, 3, 4, 5, 6, 7)>,
                                    mod11<P7, ten_is_zero, weights_from(P6, 7, 6, 5, 4, 3, 2)>,
                                    mod11<P7, ten_is_zero, weights_from(P10, 2, 3, 4, 0, 5, 6, 7, 8, 9, 10)>,
                                    mod11<P7, ten_is_zero, weights_from(P6, 2, 4, 8, 5, 10, 9)>>;
constexpr auto method_92 = products<10, P10, weights_from(P9, 3, 7, 1, 3, 7, 1)>;
constexpr auto method_93 = when<begins<0, 0, 0, 0>, first_of<method_33, mod7_five_digits>,
                                first_of<mod11<P6, ten_is_zero, weights_from(P5, 2, 3, 4, 5, 6)>,
                                         products<7, P6, weights_from(P5, 2, 3, 4, 5, 6)>>>;
constexpr auto method_94 = digit_sums<10, P10, weights_from(P9, 1, 2, 1, 2, 1, 2, 1, 2, 1)>;
constexpr auto method_95 =
    when<number_in<NumberRange{1, 1999999}, NumberRange{9000000, 25999999}, NumberRange{396000000, 499999999},
                   NumberRange{700000000, 799999999}, NumberRange{910000000, 989999999}>,
         valid, method_06>;
constexpr auto method_96 =
    first_of<method_19, method_00, unchecked_if<number_in<NumberRange{1300000, 99399999}>, invalid>>;
constexpr auto method_98 = first_of<products<10, P10, weights_from(P9, 3, 1, 7, 3, 1, 7, 3)>, method_32>;
constexpr auto method_99 = unchecked_if<number_in<NumberRange{396000000, 499999999}>, method_06>;

// --- A1 to A9 ---

constexpr auto method_A1 = only_if<has_length<8, 10>, method_60>;
constexpr auto method_A2 = first_of<method_00, method_04>;
constexpr auto method_A3 = first_of<method_00, method_10>;
constexpr auto method_A4 =
    when<has_99_at_3, first_of<method_33, method_93>, first_of<method_32, mod7_six_digits, method_93>>;
constexpr auto method_A5 = first_of<method_00, invalid_if<has<P1, 9>, method_10>>;
constexpr auto method_A6 = when<has<P2, 8>, method_00, method_01>;
constexpr auto method_A7 = first_of<method_00, method_03>;
constexpr auto method_A8 = when<has<P3, 9>, ledger_account, first_of<method_32, six_digit_stem>>;
constexpr auto method_A9 = first_of<method_01, method_06>;

// --- B1 to B9 (B6 needs the bank code) ---

constexpr auto method_B1 = first_of<method_05, method_01, method_00>;
constexpr auto method_B2 = when<has_less_than<P1, 8>, method_02, method_00>;
constexpr auto method_B3 = when<has_less_than<P1, 9>, method_32, method_06>;
constexpr auto method_B5 = first_of<method_05, invalid_if<has<P1, 8, 9>, method_00>>;
constexpr auto method_B7 = when<number_in<NumberRange{1000000, 5999999}, NumberRange{700000000, 899999999}>,
                                method_01, not_checkable>;
constexpr auto method_B8 =
    first_of<method_20, method_29,
             unchecked_if<digits_in<P1, P3, NumberRange{510, 599}, NumberRange{901, 910}>, invalid>>;
constexpr auto method_B9 =
    when<has_length<8>, raised_products_of_eight, only_if<has_length<7>, remainder_of_seven>>;

// --- C1 to C9 (C0 needs the bank code) ---

constexpr auto nine_digits_C1 =
    sum_less_one<P10, weights_from(P9, 1, 0, 1, 0, 1, 0, 1, 0, 1), weights_from(P8, 2, 0, 2, 0, 2, 0, 2)>;
constexpr auto method_C1 = when<has<P1, 5>, nine_digits_C1, method_17>;
constexpr auto method_C2 = first_of<method_22, method_00, method_04>;
constexpr auto method_C3 = when<has<P1, 9>, method_58, method_00>;
constexpr auto method_C4 = when<has<P1, 9>, method_58, method_15>;
constexpr auto ten_digits_C5 =
    when<has<P1, 1, 4, 5, 6, 9>, method_29,
         when<has<P1, 3>, method_00, unchecked_if<any<begins<7, 0>, begins<8, 5>>, invalid>>>;
constexpr auto nine_digits_C5 =
    only_if<digits_in<P2, P2, NumberRange{1, 8}>, digit_sums<10, P7, weights_from(P6, 2, 1, 2, 1, 2)>>;
constexpr auto eight_digits_C5 = unchecked_if<has<P3, 3, 4, 5>, invalid>;
constexpr auto six_digits_C5 = only_if<digits_in<P5, P5, NumberRange{1, 8}>, five_digit_stem>;
constexpr auto method_C5 =
    when<has_length<10>, ten_digits_C5,
         when<has_length<9>, nine_digits_C5,
              when<has_length<8>, eight_digits_C5, only_if<has_length<6>, six_digits_C5>>>>;
constexpr auto method_C6 = prefixed<prefixes("4451970", "4451981", "4451992", "4451993", "4344992", "4344990",
                                             "4344991", "5499570", "4451994", "5499579")>;
constexpr auto method_C7 = first_of<method_63, method_06>;
constexpr auto method_C8 = first_of<method_00, method_04, method_07>;
constexpr auto method_C9 = first_of<method_00, method_07>;

// --- D0 to D9 ---

constexpr auto method_D0 = unchecked_if<begins<5, 7>, method_20>;
constexpr auto method_D1 = prefixed<prefixes("4363380", "4363381", "4363382", "4363383", "4363384", "4363385",
                                             "4363386", "4363387", "", "4363389")>;
constexpr auto method_D2 = first_of<method_95, method_00, method_68>;
constexpr auto method_D3 = first_of<method_00, method_27>;
constexpr auto method_D4 = invalid_if<has<P1, 0>, digit_sums_and<prefix_sum("428259", 1), weights_00>>;
constexpr auto mod10_six_digits_D5 = products<10, P10, weights_from(P9, 2, 3, 4, 5, 6, 7)>;
constexpr auto method_D5 =
    when<has_99_at_3, mod11_seven_digits, first_of<method_32, mod7_six_digits, mod10_six_digits_D5>>;
constexpr auto method_D6 = first_of<method_07, method_03, method_00>;
constexpr auto method_D7 = units_digit;
constexpr auto method_D8 = when<has_length<10>, method_00, unchecked_if<has_length<8>, invalid>>;
constexpr auto method_D9 = first_of<method_00, method_10, method_18>;

// --- E0 to E4 ---

constexpr auto method_E0 = digit_sums_and<7, weights_00>;
constexpr int zeros_E1 = '0' * (1 + 2 + 3 + 4 + 5 + 6 + 11 + 10 + 9); // a digit counts as its ASCII code
constexpr auto method_E1 = mod11_remainder<zeros_E1, weights_from(P9, 1, 2, 3, 4, 5, 6, 11, 10, 9)>;
constexpr auto method_E2 =
    prefixed<prefixes("4383200", "4383201", "4383202", "4383203", "4383204", "4383205")>;
constexpr auto method_E3 = first_of<method_00, method_21>;
constexpr auto method_E4 = first_of<method_02, method_00>;

// --- With the bank code, whose digits are part of the computation; it has exactly eight characters. ---

// Eight digits X P y1..y6: the old number is the bank code's last four digits, X, P and y.
inline CheckResult method_52(const char* account, const char* bank_code) {
    if (has<P1, 9>(account)) return method_20(account);
    if (!has_length<8>(account)) return account_invalid;
    return eser_number({digit(bank_code, P5), digit(bank_code, P6), digit(bank_code, P7),
                        digit(bank_code, P8), digit(account, P3), digit(account, P4)},
                       account);
}

// Nine digits X T P y1..y6: as method 52, with T in place of the bank code's seventh digit.
inline CheckResult method_53(const char* account, const char* bank_code) {
    if (has<P1, 9>(account)) return method_20(account);
    if (!has_length<9>(account)) return account_invalid;
    return eser_number({digit(bank_code, P5), digit(bank_code, P6), digit(account, P3), digit(bank_code, P8),
                        digit(account, P2), digit(account, P4)},
                       account);
}

// Method 20 for ten digits and from 269100000 to 269999999.
inline CheckResult method_B6(const char* account, const char* bank_code) {
    const bool in_range = begins<0, 2, 6, 9>(account) && digit(account, P5) > 0;
    return digit(account, P1) > 0 || in_range ? method_20(account) : method_53(account, bank_code);
}

// Method 52 for eight digits; if that fails, and for all others, method 20.
inline CheckResult method_C0(const char* account, const char* bank_code) {
    const CheckResult result = has_length<8>(account) ? method_52(account, bank_code) : account_invalid;
    return result == account_invalid ? method_20(account) : result;
}

} // namespace velmora
