// The check-digit methods computed from the rules in tests/data/check_method_rules.txt: slow, plain, and
// apart from the library's arithmetic.
#pragma once

#include <fnmatch.h>

#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::test {

constexpr int undecided = -1;

inline int value(const std::string& digits, int i) {
    return digits[static_cast<std::size_t>(i)] - '0';
}

inline int digit_sum(int product) {
    return product / 10 + product % 10;
}

struct Rule {
    std::string accounts; // pattern
    std::string kind;     // "=", "see", "luhn", "routine" or "compute"
    std::string operand;  // result, method or prefix
    int at = 0;           // position of the check digit; "luhn": first position
    std::string sum, remainder;
    int modulus = 0;
    int weights[10] = {};

    bool applies_to(const std::string& account) const {
        return fnmatch(accounts.c_str(), account.c_str(), 0) == 0;
    }

    // A random account that the rule applies to, every other time with zeros before its digits.
    std::string account_for(std::mt19937_64& random) const {
        const std::string beginning = accounts.substr(0, accounts.find_first_of("[*?"));
        std::string account;
        do {
            account = std::to_string(10'000'000'000 + random() % 10'000'000'000).substr(1);
            if (random() % 2 == 0) account = account.erase(random() % 10).insert(0, 10 - account.size(), '0');
            account.replace(0, beginning.size(), beginning);
        } while (!applies_to(account));
        return account;
    }
};

inline std::istream& operator>>(std::istream& in, Rule& rule) {
    in >> rule.accounts >> rule.kind;
    if (rule.kind == "routine") return in;
    if (rule.kind == "luhn") return in >> rule.operand >> rule.at;
    if (rule.kind == "=" || rule.kind == "see") return in >> rule.operand;
    rule.at = std::stoi(rule.kind);
    rule.kind = "compute";
    in >> rule.sum >> rule.modulus >> rule.remainder;
    std::string weight;
    for (int i = 0; i < 10 && in >> weight; ++i)
        rule.weights[i] = weight == "." ? 0 : std::stoi(weight);
    return in;
}

inline int sum_of(const Rule& rule, const std::string& account) {
    int sum = rule.sum == "digits+7" ? 7 : 0;
    for (int i = 0; i < 10; ++i) {
        const int digit = value(account, i), weight = rule.weights[i];
        sum += rule.sum == "plain"   ? digit * weight
               : rule.sum == "ascii" ? (digit + '0') * weight
               : rule.sum == "next"  ? (digit + 1) * weight % 11
                                     : digit_sum(digit * weight);
    }
    return sum;
}

// The check digit that a sum asks for; 10 where no digit is right.
inline int check_digit(const Rule& rule, int sum, int digit_before) {
    const std::string& name = rule.remainder;
    const int r = sum % rule.modulus;
    const int rest = r == 0 ? 0 : rule.modulus - r;
    if (name == "fill") return rest % 10;
    if (name == "strict") return rest;
    if (name == "nine") return rest == 10 ? 9 : rest;
    if (name == "one") return rest == 10 ? 1 : rest;
    if (name == "twin") return rest == 10 ? digit_before : rest;
    if (name == "swap") return r == 0 ? 1 : r == 1 ? 0 : rest;
    if (name == "rest" || name == "stem" || name == "shifted") return r;
    if (name == "five") return (r + 5) % 10;
    if (name == "half") return (15 - r) % 10;
    if (name == "positive") return r == 0 ? 10 : rest;
    if (name == "leap") return r == 0 ? 8 : r == 1 ? 7 : rest;
    if (name == "less") return sum == 0 ? 10 : (sum - 1) % 11 == 0 ? 0 : 10 - (sum - 1) % 11;
    if (name == "root") return sum == 0 ? 0 : 9 - (sum - 1) % 9;
    throw std::runtime_error("no such remainder rule: " + name);
}

inline int compute(const Rule& rule, const std::string& account) {
    const bool stem = rule.remainder == "stem" || rule.remainder == "shifted";
    const int wanted = check_digit(rule, sum_of(rule, account), value(account, rule.at - 2));
    if (wanted == 10) return stem ? 0 : undecided;
    if (wanted != value(account, rule.at - 1)) return undecided;
    return rule.remainder == "shifted" ? 2 : 1;
}

inline int luhn(const Rule& rule, const std::string& account) {
    const std::string digits = rule.operand + account.substr(static_cast<std::size_t>(rule.at - 1));
    int sum = 0, weight = 1;
    for (int i = static_cast<int>(digits.size()); i-- > 0; weight = 3 - weight)
        sum += digit_sum(value(digits, i) * weight);
    return sum % 10 == 0 ? 1 : undecided;
}

inline std::string without_leading_zeros(std::string digits) {
    return digits.erase(0, digits.find_first_not_of('0'));
}

inline int method_24(const std::string& account) {
    const char kind = account[0];
    const std::size_t start = kind >= '3' && kind <= '6' ? 1 : kind == '9' ? 3 : 0;
    const std::string digits = without_leading_zeros(account.substr(start, 9 - start));
    int sum = 0;
    for (int i = 0; i < static_cast<int>(digits.size()); ++i)
        sum += (value(digits, i) + 1) * (i % 3 + 1) % 11;
    return sum % 10 == value(account, 9) ? 1 : undecided;
}

inline int method_29(const std::string& account) {
    const std::string rows[] = {"0159374826", "0176983254", "0184629573", "0123456789"};
    int sum = value(account, 9);
    for (int i = 0; i < 9; ++i)
        sum += value(rows[i % 4], value(account, 8 - i));
    return sum % 10 == 0 ? 1 : undecided;
}

// The old account number is put together with a zero for its check digit; then the digit is looked for.
inline int old_number(const std::string& first_five, const std::string& account) {
    const std::string old = first_five + "0" + without_leading_zeros(account.substr(4));
    const int weights[] = {2, 4, 8, 5, 10, 9, 7, 3, 6, 1, 2, 4};
    const int last = static_cast<int>(old.size()) - 1;
    int sum = 0;
    for (int i = 0; i <= last; ++i)
        sum += value(old, i) * weights[last - i];
    for (int factor = 0; factor <= 9; ++factor)
        if ((sum + factor * weights[last - 5]) % 11 == 10) return factor == value(account, 3) ? 1 : undecided;
    return undecided;
}

inline int method_87(const std::string& account) {
    int i = 4;
    while (i < 10 && value(account, i - 1) == 0)
        ++i;
    int c = i % 2, t = 0, a = 0;
    for (; i <= 9; ++i) {
        int k = value(account, i - 1);
        k = k == 0 ? 5 : k == 1 ? 6 : k == 5 ? 10 : k == 6 ? 1 : k;
        const int v = k > 5 && c == 0 ? 12 - k : k;
        a = c == t ? a + v : a - v;
        t = k > 5 ? 1 - t : t;
        c = 1 - c;
    }
    while (a < 0)
        a += 5;
    const int p = value(t == 0 ? "04326" : "71598", a % 5);
    const int last = value(account, 9);
    return last == p || (account[3] == '0' && last == (p + 5) % 10) ? 1 : undecided;
}

inline int routine(const std::string& method, const std::string& account, const std::string& bank) {
    if (method == "24") return method_24(account);
    if (method == "29") return method_29(account);
    if (method == "52") return old_number(bank.substr(4) + account[2], account);
    if (method == "53") return old_number(bank.substr(4, 2) + account[2] + bank[7] + account[1], account);
    if (method == "87") return method_87(account);
    throw std::runtime_error("no routine for method " + method);
}

struct Verdict {
    int result = -1;
    const Rule* rule = nullptr; // that decided; null where none did
};

// The rules by method; those with longer names have no code.
class CheckMethodRules : public std::map<std::string, std::vector<Rule>> {
public:
    CheckMethodRules() {
        std::ifstream file(VELMORA_SOURCE_DIR "/tests/data/check_method_rules.txt");
        for (std::string line; std::getline(file, line);) {
            if (line.empty() || line[0] == '#') continue;
            std::istringstream in(line);
            std::string method, excess;
            Rule rule;
            if (!(in >> method >> rule) || in >> excess) throw std::runtime_error("unreadable rule: " + line);
            (*this)[method].push_back(rule);
        }
    }

    // The account has ten characters.
    Verdict check(const std::string& method, const std::string& account, const std::string& bank) const {
        for (const Rule& rule : at(method)) {
            if (!rule.applies_to(account)) continue;
            if (rule.kind == "=") return {std::stoi(rule.operand), &rule};
            const int result = rule.kind == "see"       ? check(rule.operand, account, bank).result
                               : rule.kind == "luhn"    ? luhn(rule, account)
                               : rule.kind == "routine" ? routine(method, account, bank)
                                                        : compute(rule, account);
            if (result != undecided) return {result, &rule};
        }
        return {};
    }
};

} // namespace velmora::test
