/// @file
/// Reading the texts of a model folder.
#pragma once

#include "simulator/pair_list.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace koine::sim {

/// The whole content of a file.
/// @throws std::runtime_error naming the file and what to do
std::string fileText(const std::filesystem::path& file);

/// The pairs of an answer text: "0", "OK" and then one "key=value" per line.
/// @param where names the text in errors
/// @throws std::runtime_error naming the line that is wrong
PairList answerPairs(std::string_view text, const std::string& where);

/// Takes the next line off a text; a "\r" before the line end does not count.
std::string_view takeLine(std::string_view& text) noexcept;

/// @throws std::runtime_error "WHERE, line NUMBER: WHAT"
[[noreturn]] void failAtLine(const std::string& where, std::size_t line, const std::string& what);

} // namespace koine::sim
