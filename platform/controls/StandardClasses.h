#pragma once
// The framework's own component classes, registered by name so that form files can create
// them. Applications call this once before reading forms; the package registers its own
// classes through its Register.

namespace qv {

// Registers TForm and the standard controls and components. Safe to call more than once.
void RegisterStandardClasses();

} // namespace qv
