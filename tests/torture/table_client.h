/// @file
/// An HTTP client that answers as a camera and allocates nothing: what fails is the library's own.
#pragma once

namespace koine::torture {

/// Builds the table. Call it while there is memory.
void prepareTable();

} // namespace koine::torture
