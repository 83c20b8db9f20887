// Feeds arbitrary bytes to the setup-file reader. It must never crash, hang or allocate
// without bound; a file it refuses gets a reason; whatever it accepts must write back and
// read again to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "core/fault.h"
#include "core/setup_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kova;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    auto st = std::make_unique<Station>();
    std::string error;
    // The reader refuses exactly the files FindSetupFileProblems finds fault with (it asks
    // it first), and names the first problem.
    if (!DecodeSetupFile(*st, bytes, error)) {
        if (error.empty()) std::abort();
        return 0;
    }
    // A file that reads holds only items that fit their records, so it can be written:
    // the writer throws on any item it cannot store.
    std::string once;
    try {
        once = EncodeSetupFile(*st);
    } catch (const Fault&) {
        std::abort();
    }
    if (once.size() != static_cast<std::size_t>(kSetupFileLength)) std::abort();
    auto again = std::make_unique<Station>();
    if (!DecodeSetupFile(*again, once, error)) std::abort();
    if (EncodeSetupFile(*again) != once) std::abort();
    return 0;
}
