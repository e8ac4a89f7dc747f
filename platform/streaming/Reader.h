#pragma once
// Reading text form files:
//
//   object Form1: TForm
//     Caption = 'Meter'
//     Font.Name = 'Arial'
//     object Led1: TqLed
//       LedColor = lcRed
//       OnClick = Led1Click
//     end
//   end
//
// Components are created in file order through the class registry, owned by the root, and
// get their properties in file order while csLoading and csReading are set. References to
// other components are resolved after the whole file is read; then every component read
// gets Loaded, in reading order. Any error raises EReadError naming line, column and what
// was expected, and frees the components this read created.

#include "platform/core/Component.h"
#include "platform/core/PropertyAccess.h"

#include <memory>
#include <string>
#include <string_view>

namespace qv {

struct TReadOptions {
    // Sets csDesigning on every component before its properties are read.
    bool designing{false};
    // Handlers for event properties. Without a table, events are not bound, but the
    // handler names are kept so that writing the form back loses nothing.
    const TEventTable* events{nullptr};
};

// Creates the root component from the file's class name; the caller owns it.
std::unique_ptr<TComponent> ReadComponentText(std::string_view text,
                                              const TReadOptions& options = {});
// The same with the root owned by `owner`, which frees it.
TComponent* ReadComponentText(std::string_view text, TComponent& owner,
                              const TReadOptions& options = {});
// Reads into an existing root (a form built in code), whose class must be the file's class
// or derive from it.
void ReadRootText(TComponent& root, std::string_view text, const TReadOptions& options = {});
// The same for files; errors name the file too.
std::unique_ptr<TComponent> ReadComponentFile(const std::string& path,
                                              const TReadOptions& options = {});

} // namespace qv
