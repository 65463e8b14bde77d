#include "Output_Manager.h"

namespace korv {

namespace {

constexpr std::streamsize buffer_bytes = 1 << 16;

}  // namespace

Output_Manager::Output_Manager(const std::string& file_name) : buffer_(buffer_bytes) {
    // A stream takes its buffer only before its file is open.
    rdbuf()->pubsetbuf(buffer_.data(), buffer_bytes);
    open(file_name, std::ios::out | std::ios::trunc);
}

Output_Manager::~Output_Manager() {
    // Before the members go: the stream still writes from the buffer.
    close();
}

void Output_Manager::write_out_basket(const Itemset& itemset) {
    for (const Item item : itemset) {
        *this << item << ' ';
    }
}

}  // namespace korv
