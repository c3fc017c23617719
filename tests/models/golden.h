/// @file
/// Answers that a person has read and found right, kept as texts.
#pragma once

#include <string>

namespace koine::test {

/// Whether golden answers are to be rewritten: the environment holds KOINE_UPDATE_GOLDEN=1.
bool isUpdatingGolden();

/// Holds a text against golden/<model>/<what>.txt and fails the test with the lines that differ, or with what
/// to do when there is no such file. Rewrites the file instead when that is wanted.
void expectGolden(const std::string& model, const std::string& what, const std::string& text);

} // namespace koine::test
