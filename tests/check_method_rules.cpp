#include "check_method_rules.h"

#include <fnmatch.h>

#include <fstream>
#include <sstream>

namespace velmora::test {
namespace {

constexpr int undecided = -1;

int value(char c) {
    return c - '0';
}

char at(const std::string& text, int position) {
    return text[static_cast<std::size_t>(position)];
}

int digit_sum(int product) {
    return product > 9 ? product / 10 + product % 10 : product;
}

std::string without_leading_zeros(const std::string& digits) {
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? "" : digits.substr(first);
}

int sum_of(const Rule& rule, const std::string& account) {
    int sum = rule.sum == "digits+7" ? 7 : 0;
    for (int i = 0; i < 10; ++i) {
        const int digit = rule.sum == "ascii" ? at(account, i) : value(at(account, i));
        const int product = digit * rule.weights[i];
        sum += rule.sum.starts_with("digits") ? digit_sum(product) : product;
    }
    return sum;
}

// The check digit that a sum asks for; 10 where no digit is right.
int check_digit(const Rule& rule, int sum, char digit_before) {
    const std::string& name = rule.remainder;
    const int r = sum % rule.modulus;
    const int rest = r == 0 ? 0 : rule.modulus - r;
    if (name == "fill") return rest % 10;
    if (name == "strict") return rest;
    if (name == "nine") return rest == 10 ? 9 : rest;
    if (name == "one") return rest == 10 ? 1 : rest;
    if (name == "twin") return rest == 10 ? value(digit_before) : rest;
    if (name == "swap") return r == 0 ? 1 : r == 1 ? 0 : rest;
    if (name == "rest" || name == "stem" || name == "shifted") return r;
    if (name == "half") return (15 - r) % 10;
    if (name == "positive") return r == 0 ? 10 : rest;
    if (name == "leap") return r == 0 ? 8 : r == 1 ? 7 : rest;
    if (name == "less") return sum == 0 ? 10 : (sum - 1) % 11 == 0 ? 0 : 10 - (sum - 1) % 11;
    if (name == "root") return sum == 0 ? 0 : 9 - (sum - 1) % 9;
    throw std::runtime_error("no such remainder rule: " + name);
}

int compute(const Rule& rule, const std::string& account) {
    const bool stem = rule.remainder == "stem" || rule.remainder == "shifted";
    const int wanted = check_digit(rule, sum_of(rule, account), at(account, rule.at - 2));
    if (wanted == 10) return stem ? 0 : undecided;
    if (wanted != value(at(account, rule.at - 1))) return undecided;
    return rule.remainder == "shifted" ? 2 : 1;
}

int luhn(const Rule& rule, const std::string& account) {
    const std::string digits = rule.text + account.substr(static_cast<std::size_t>(rule.at - 1),
                                                          static_cast<std::size_t>(10 - rule.at));
    int sum = 0, weight = 2;
    for (std::size_t i = digits.size(); i-- > 0; weight = 3 - weight)
        sum += digit_sum(value(digits[i]) * weight);
    return (sum + value(account[9])) % 10 == 0 ? 1 : undecided;
}

int method_24(const std::string& account) {
    const char kind = account[0];
    const std::size_t start = kind >= '3' && kind <= '6' ? 1 : kind == '9' ? 3 : 0;
    const std::string digits = without_leading_zeros(account.substr(start, 9 - start));
    int sum = 0;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const int weight = static_cast<int>(i % 3) + 1;
        sum += (value(digits[i]) + 1) * weight % 11;
    }
    return sum % 10 == value(account[9]) ? 1 : undecided;
}

int method_29(const std::string& account) {
    const std::string rows[] = {"0159374826", "0176983254", "0184629573", "0123456789"};
    int sum = 0;
    for (int i = 0; i < 9; ++i)
        sum += value(at(rows[i % 4], value(at(account, 8 - i))));
    return (sum + value(account[9])) % 10 == 0 ? 1 : undecided;
}

// The old account number is put together with a zero for its check digit; then the digit is looked for.
int eser(std::string first_five, char digit, const std::string& rest) {
    const std::string old = first_five + "0" + without_leading_zeros(rest);
    const int weights[] = {2, 4, 8, 5, 10, 9, 7, 3, 6, 1, 2, 4};
    const std::size_t last = old.size() - 1;
    int sum = 0;
    for (std::size_t i = 0; i < old.size(); ++i)
        sum += value(old[i]) * weights[last - i];
    for (int factor = 0; factor <= 9; ++factor)
        if ((sum % 11 + factor * weights[last - 5]) % 11 == 10) return factor == value(digit) ? 1 : undecided;
    return undecided;
}

int method_52(const std::string& account, const std::string& bank_code) {
    return eser(bank_code.substr(4) + account[2], account[3], account.substr(4));
}

int method_53(const std::string& account, const std::string& bank_code) {
    return eser(bank_code.substr(4, 2) + account[2] + bank_code[7] + account[1], account[3],
                account.substr(4));
}

int method_87(const std::string& account) {
    int i = 4;
    while (i < 10 && at(account, i - 1) == '0')
        ++i;
    int c = i % 2, t = 0, a = 0;
    for (; i <= 9; ++i) {
        int k = value(at(account, i - 1));
        k = k == 0 ? 5 : k == 1 ? 6 : k == 5 ? 10 : k == 6 ? 1 : k;
        const int v = k > 5 && c == 0 ? 12 - k : k;
        a = c == t ? a + v : a - v;
        t = k > 5 ? 1 - t : t;
        c = 1 - c;
    }
    while (a < 0)
        a += 5;
    const std::string table = t == 0 ? "04326" : "71598";
    const int p = value(at(table, a % 5));
    const int last = value(account[9]);
    return last == p || (account[3] == '0' && last == (p + 5) % 10) ? 1 : undecided;
}

int method_B9(const std::string& account) {
    int sum = 0;
    if (account[2] != '0')
        for (int i = 0; i < 7; ++i)
            sum += (value(at(account, 2 + i)) + 1) * (i % 3 + 1) % 11;
    else
        for (int i = 0; i < 6; ++i)
            sum += value(at(account, 3 + i)) * (6 - i);
    const int wanted = account[2] != '0' ? sum % 10 : sum % 11;
    const int higher = wanted + 5 >= 10 ? wanted - 5 : wanted + 5;
    const int last = value(account[9]);
    return last == wanted || last == higher ? 1 : undecided;
}

int routine(const std::string& method, const std::string& account, const std::string& bank_code) {
    if (method == "24") return method_24(account);
    if (method == "29") return method_29(account);
    if (method == "52") return method_52(account, bank_code);
    if (method == "53") return method_53(account, bank_code);
    if (method == "87") return method_87(account);
    if (method == "B9") return method_B9(account);
    throw std::runtime_error("no routine for method " + method);
}

Rule parse(const std::string& line) {
    Rule rule;
    std::istringstream in(line);
    std::string selection;
    in >> rule.method >> selection >> rule.kind;
    const std::size_t dash = selection.find('-');
    if (dash == std::string::npos || selection.find('[') != std::string::npos) {
        rule.accounts = selection;
    } else {
        rule.first = std::stoll(selection);
        rule.last = std::stoll(selection.substr(dash + 1));
    }
    if (rule.kind == "=") {
        in >> rule.result;
    } else if (rule.kind == "see") {
        in >> rule.text;
    } else if (rule.kind == "luhn") {
        in >> rule.text >> rule.at;
    } else if (rule.kind != "routine") {
        rule.at = std::stoi(rule.kind);
        rule.kind = "compute";
        in >> rule.sum >> rule.modulus >> rule.remainder;
        for (int& weight : rule.weights) {
            std::string word;
            in >> word;
            weight = word == "." ? 0 : std::stoi(word);
        }
    }
    if (in.fail() || in >> selection) throw std::runtime_error("rule cannot be read: " + line);
    return rule;
}

} // namespace

bool Rule::applies_to(const std::string& account) const {
    if (!accounts.empty()) return fnmatch(accounts.c_str(), account.c_str(), 0) == 0;
    const std::int64_t number = std::stoll(account);
    return number >= first && number <= last;
}

std::string Rule::account_for(std::mt19937& random) const {
    const auto any = [&random](std::int64_t low, std::int64_t high) {
        return std::uniform_int_distribution<std::int64_t>(low, high)(random);
    };
    if (accounts.empty()) {
        const std::string number = std::to_string(any(first, last));
        return std::string(10 - number.size(), '0') + number;
    }
    // Digits behind the pattern's literal beginning are drawn until it fits, with zeros before them every
    // other time.
    std::string account;
    do {
        const std::int64_t zeros = any(0, 1) == 0 ? 0 : any(0, 9);
        account.clear();
        for (int i = 0; i < 10; ++i) {
            const bool literal = accounts.size() > static_cast<std::size_t>(i) &&
                                 accounts.find_first_of("[*?") > static_cast<std::size_t>(i);
            account += literal     ? accounts[static_cast<std::size_t>(i)]
                       : i < zeros ? '0'
                                   : static_cast<char>('0' + any(0, 9));
        }
    } while (!applies_to(account));
    return account;
}

CheckMethodRules::CheckMethodRules() {
    std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/check_method_rules.txt");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        const Rule rule = parse(line);
        if (rule.method.size() == 2 && !rules_.contains(rule.method)) methods_.push_back(rule.method);
        rules_[rule.method].push_back(rule);
    }
}

Verdict CheckMethodRules::check(const std::string& method, const std::string& account,
                                const std::string& bank_code) const {
    for (const Rule& rule : rules_of(method)) {
        if (!rule.applies_to(account)) continue;
        if (rule.kind == "=") return {rule.result, &rule};
        const int result = rule.kind == "see"       ? check(rule.text, account, bank_code).result
                           : rule.kind == "luhn"    ? luhn(rule, account)
                           : rule.kind == "routine" ? routine(method, account, bank_code)
                                                    : compute(rule, account);
        if (result != undecided) return {result, &rule};
    }
    return {};
}

} // namespace velmora::test
