// The German bank codes of the directory.
#pragma once

#include <string>
#include <vector>

#include "bank/directory.h"

inline std::vector<std::string> german_bank_codes() {
    std::vector<std::string> bank_codes;
    for (int slot = 0; slot < velmora::directory_size(); ++slot)
        if (const auto record = velmora::directory_record(slot); record.substr(0, 3) == "_DE")
            bank_codes.emplace_back(record.substr(3, 8));
    return bank_codes;
}
