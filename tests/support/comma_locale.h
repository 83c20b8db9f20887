#pragma once
// A comma-decimal locale (de_DE.UTF-8) for tests that must show numbers do not follow the
// process locale. These machines carry only C and C.UTF-8, so it is made with localedef
// into a folder of its own, once per machine, and used through LOCPATH.
#include <string>

namespace kova::test {

inline constexpr const char* kCommaLocale = "de_DE.UTF-8";

// Makes the locale if needed and points LOCPATH at it, so that setlocale(..., kCommaLocale)
// and a QApplication started with LC_ALL=kCommaLocale find it. False with the reason when
// it cannot be made (no localedef, no locale sources).
bool PrepareCommaLocale(std::string& why);

}  // namespace kova::test
