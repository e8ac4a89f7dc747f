#pragma once
// Keyboard translation for the X11 backend: X keysyms to the classic virtual-key codes, and
// the text a key press types to the characters of Char events. Pure functions over keysyms,
// so they are tested without a display.

#include <string>

namespace qv {

// The virtual-key code of a keysym (letters by their capital, digits by their digit, the
// numeric keypad, function, navigation, modifier and punctuation keys), or 0 when the key
// has no classic code.
unsigned VirtualKeyFromKeysym(unsigned long keysym);

// The Char events a key press produces from the bytes XLookupString returned: every
// printable Latin-1 character and the classic control characters (Backspace, Tab, Return,
// Escape, Ctrl+letter); Delete types nothing.
std::string CharsFromLookup(const std::string& looked);

} // namespace qv
