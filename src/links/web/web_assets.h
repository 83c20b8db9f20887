#pragma once
// The page's files (HTML, script, style sheet and the chart library), built into the
// program so that a station serves everything its page needs and nothing else.
#include <cstddef>
#include <string_view>

namespace kova::web {

struct WebAsset {
    std::string_view path;  // "/", "/app.js", ...
    std::string_view contentType;
    const unsigned char* data;
    std::size_t size;
};

// nullptr when no file of the page has this path.
const WebAsset* FindWebAsset(std::string_view path);

}  // namespace kova::web
