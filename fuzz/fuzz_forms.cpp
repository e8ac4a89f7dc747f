// Feeds arbitrary bytes to the form-file reader. Every input must either read or raise
// EReadError; nothing may crash, leak or touch freed memory. What reads must write and
// read back again.
#include "platform/core/Exceptions.h"
#include "platform/streaming/Reader.h"
#include "platform/streaming/Writer.h"
#include "tests/support/TestComponents.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool registered = (qv::RegisterTestComponents(), true);
    (void)registered;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<qv::TComponent> root;
    try {
        root = qv::ReadComponentText(text);
    } catch (const qv::EReadError&) {
        return 0;
    }
    std::string written;
    try {
        written = qv::WriteComponentText(*root);
    } catch (const qv::EWriteError&) {
        return 0; // for example a float that read as infinity
    }
    auto again = qv::ReadComponentText(written); // must not throw
    if (qv::WriteComponentText(*again) != written) __builtin_trap();
    return 0;
}
