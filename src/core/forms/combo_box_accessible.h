#pragma once
// What a screen reader hears for a combo box. On Linux Qt names a combo box by the text it
// holds ("AI-1"), whatever name the program gave it, so a listener never learns which box it
// is in. This interface names a combo box by its accessible name (the caption beside it) and
// keeps the text as its value, as for any other box. The program's application object
// installs it; so does any Qt test that creates the windows.

namespace kova::forms {

// Installs the interface for every QComboBox of the process (once; later calls do nothing).
void InstallComboBoxAccessible();

}  // namespace kova::forms
