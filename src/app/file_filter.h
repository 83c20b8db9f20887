#pragma once
// File dialog filters: the program's "Description (*.EXT)|*.EXT|" form to Qt's
// "Description (*.EXT);;..." form.
#include <string>

namespace kova::app {

// Each description|pattern pair becomes one Qt filter "Description (patterns)"; patterns
// separated by ';' are listed with blanks. An empty filter gives "".
std::string QtFileFilter(const std::string& filter);

// The extension of the first pattern ("SUF" for "*.SUF"), "" when it has none or a wildcard.
std::string DefaultSuffix(const std::string& filter);

}  // namespace kova::app
