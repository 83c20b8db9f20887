#pragma once
// What a screen reader hears for a combo box. On Linux Qt names a combo box by the text it
// holds ("AI-1"), whatever name the program gave it, so a listener never learns which box it
// is in. This interface names a combo box by its accessible name (the caption beside it) and
// keeps the text as its value, as for any other box. The application object installs it
// once it is made (Qt keeps the interface it first made for a box, so it must come before
// any combo box is filled); so does the test program of the windows.

namespace kova::forms {

// Installs the interface for every QComboBox of the process (once; later calls do nothing).
// It takes precedence over Qt's own only when installed after the QApplication is made.
void InstallComboBoxAccessible();

}  // namespace kova::forms
