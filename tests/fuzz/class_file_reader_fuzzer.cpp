// Any bytes as a class file: the reader ends, keeps the shape of what it returns, and reads the same again
// after a rewind.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <tuple>

#include "io/Input_Output_Manager.h"

namespace {

using Record = std::tuple<korv::Itemset, korv::Count, std::vector<korv::Itemset>>;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void require_shape(const korv::Itemset& itemset, const std::vector<korv::Itemset>& essentials) {
    require(std::ranges::is_sorted(itemset));
    for (const korv::Itemset& essential : essentials) {
        require(std::ranges::is_sorted(essential));
        require(essential.size() != itemset.size());
    }
}

std::vector<Record> read_records(korv::Input_Output_Manager& reader) {
    std::vector<Record> records;
    korv::Itemset itemset;
    korv::Count support = 0;
    std::vector<korv::Itemset> essentials;
    reader.rewind();
    while (reader.read_in_a_line(itemset, support, essentials)) {
        require_shape(itemset, essentials);
        records.emplace_back(itemset, support, essentials);
    }
    return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::cout.setstate(std::ios::failbit);  // "fin de fichier" would drown the fuzzer's own lines
    std::istringstream input(std::string(bytes, bytes + size));
    korv::Input_Output_Manager reader(input, "/dev/null");
    const std::vector<Record> records = read_records(reader);
    require(read_records(reader) == records);
    return 0;
}
