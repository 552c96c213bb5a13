// The check-digit methods computed from the rules in tests/data/check_method_rules.txt: slow, plain, and
// apart from the library's arithmetic.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace velmora::test {

struct Rule {
    std::string method;
    std::string accounts;             // pattern; empty where a range selects
    std::int64_t first = 0, last = 0; // range
    std::string kind;                 // "=", "see", "luhn", "routine" or "compute"
    int result = 0;                   // "="
    std::string text;                 // "see": method, "luhn": prefix
    int at = 0;                       // position of the check digit; "luhn": first position
    std::string sum, remainder;
    int modulus = 0;
    int weights[10] = {};

    bool applies_to(const std::string& account) const;
    // A random account that the rule applies to.
    std::string account_for(std::mt19937& random) const;
};

struct Verdict {
    int result = -1;
    const Rule* rule = nullptr; // that decided; null where none did
};

class CheckMethodRules {
public:
    CheckMethodRules();

    // Methods that have a code, in ascending order.
    const std::vector<std::string>& methods() const { return methods_; }
    const std::vector<Rule>& rules_of(const std::string& method) const { return rules_.at(method); }

    // The account has ten characters.
    Verdict check(const std::string& method, const std::string& account, const std::string& bank_code) const;

private:
    std::map<std::string, std::vector<Rule>> rules_;
    std::vector<std::string> methods_;
};

} // namespace velmora::test
