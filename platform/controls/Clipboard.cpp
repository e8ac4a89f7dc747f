#include "Clipboard.h"

namespace qv {

void TClipboard::SetAsText(const std::string& text) {
    m_text = text;
    m_hasText = true;
}

void TClipboard::Clear() {
    m_text.clear();
    m_hasText = false;
}

TClipboard& Clipboard() {
    static TClipboard clipboard;
    return clipboard;
}

} // namespace qv
