// Arbitrary text through both compilers of the control language, then through the
// evaluator: as source text (compiled, then run) and as stored code (a hostile setup file).
// Nothing may crash, hang or grow without bound.
#include <cstddef>
#include <cstdint>
#include <string>

#include "control/compiler.h"
#include "control/evaluator.h"
#include "control/line_check.h"
#include "control/run_controls.h"
#include "core/station.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace {

void tag(kova::Station& st, int n, const char* name, const char* io) {
    kova::Tag& t = st.tags[n];
    t.TagName = name;
    kova::BindIOName(t, io);
    t.Address = 1;
    t.RawValue2 = 4095;
    t.EngValue2 = 100;
    if (t.Kind == kova::kAnalog) kova::ComputeScaling(t);
    t.Value = static_cast<float>(n) - 3;
}

void buildStation(kova::Station& st) {
    kova::BuildIOList(st.profile, kova::kDaqQrtu);
    tag(st, 1, "A", "Analog Variable");
    tag(st, 2, "B", "Analog Variable");
    tag(st, 3, "TANK1", "AI-3");
    tag(st, 4, "AO1", "AO-1");
    tag(st, 5, "DO1", "DO-1");
    tag(st, 6, "PUMP", "DO-8");
    tag(st, 7, "DI1", "DI-2");
    tag(st, 8, "FLAG", "Digital Variable");
    kova::RebuildTagNameIndex(st.tags, st.nameIndex);
    st.switches.ControlsEnabled = 1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4096) return 0;
    const std::string input(reinterpret_cast<const char*>(data), size);
    // Up to the first NUL: the IF side; after it: the THEN / ELSE side.
    const std::size_t nul = input.find('\0');
    const std::string first = input.substr(0, nul);
    const std::string second = nul == std::string::npos ? input : input.substr(nul + 1);

    kova::Station st;
    buildStation(st);

    // Source text through the compilers, and what compiles through the evaluator.
    std::string code;
    std::string token;
    if (kova::CompileIf(st, first, code, token) == 1) kova::EvaluateIf(st, code);
    std::string assignment;
    if (kova::CompileAssignment(st, second, assignment, token) == 1)
        kova::ExecuteAssignment(st, assignment);

    // The editor's check of a whole line (executes what compiles).
    kova::CheckLineTexts(st, &st, first, second, second);

    // The same bytes as stored codes, evaluated directly and by the scan's pass.
    kova::EvaluateIf(st, first);
    kova::ExecuteAssignment(st, second);
    kova::ControlLine& line = st.control.Lines[1];
    line.IfText = first;
    line.IfCode = first;
    line.ThenText = "x";
    line.ThenCode = second;
    line.ElseText = "x";
    line.ElseCode = second;
    kova::ControlLine& compiled = st.control.Lines[2];
    compiled.IfText = first;
    compiled.IfCode = code;
    compiled.ThenText = second;
    compiled.ThenCode = assignment + "!";
    st.control.ControlCount = 2;
    kova::RunControls(st);
    kova::RunControls(st);
    kova::CheckControlTable(st);
    return 0;
}
