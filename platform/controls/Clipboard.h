#pragma once
// TClipboard: the application's clipboard for text. Edits copy to it and paste from it; it
// lives as long as the process and is not shared with other programs.

#include <string>

namespace qv {

class TClipboard {
public:
    bool HasText() const { return m_hasText; }
    const std::string& AsText() const { return m_text; }
    void SetAsText(const std::string& text);
    void Clear();

private:
    std::string m_text;
    bool m_hasText{false};
};

// The process-wide clipboard (main thread only).
TClipboard& Clipboard();

} // namespace qv
