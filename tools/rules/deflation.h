#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "rules/rule_writer.h"

namespace korv::tools {

/// Compresses bytes as raw deflate, at level 6: what the levels above it save is less than a hundredth, in
/// four times the time. The same bytes give the same by the same version of zlib, however they come. Takes
/// some 300 KiB.
class Deflation {
public:
    /// `sink` gets the compressed bytes, piece by piece.
    explicit Deflation(TextSink sink);
    ~Deflation();
    Deflation(const Deflation&) = delete;
    Deflation& operator=(const Deflation&) = delete;

    void add(std::string_view bytes);

    /// Writes what is left. Call this once, last.
    void finish();

private:
    class State;
    std::unique_ptr<State> state_;
};

}  // namespace korv::tools
