#pragma once
// A font whose characters all have the same width, on any machine with any fonts: lists whose
// lines begin with words of equal length (the alarm list, the tag listing) keep their columns.
#include <QFont>

namespace kova::forms {

// The machine's monospace face when it is fixed-pitch; otherwise the first installed family
// that really is. A machine whose "monospace" resolves to a proportional face (a CJK locale
// with a fallback font installed) still gets fixed-pitch text. pointSize <= 0 keeps the
// default size.
QFont FixedPitchFont(int pointSize = 0);

}  // namespace kova::forms
