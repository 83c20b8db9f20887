// Cost of one pass of the control statements over 30 typical lines, and the heap
// allocations it makes (counted by the allocation counter linked into every benchmark).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <string>

#include "control/compiler.h"
#include "control/evaluator.h"
#include "control/line_check.h"
#include "control/run_controls.h"
#include "core/station.h"
#include "support/allocation_counter.h"
#include "support/control_lines.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace {

void tag(kova::Station& st, int n, const std::string& name, const std::string& io) {
    kova::Tag& t = st.tags[n];
    t.TagName = name;
    kova::BindIOName(t, io);
    t.Address = 1;
    t.RawValue1 = 0;
    t.EngValue1 = 0;
    t.RawValue2 = 4095;
    t.EngValue2 = 100;
    if (t.Kind == kova::kAnalog) kova::ComputeScaling(t);
}

// A plant of 32 tags and 30 lines of the kind users write: level and temperature limits,
// pumps and valves on digital outputs, a setpoint on an analog output, a few computed values.
void buildPlant(kova::Station& st) {
    kova::BuildIOList(st.profile, kova::kDaqQrtu);
    for (int i = 1; i <= 8; ++i) tag(st, i, "LEVEL" + std::to_string(i), "AI-" + std::to_string(i));
    for (int i = 1; i <= 8; ++i)
        tag(st, 8 + i, "PUMP" + std::to_string(i), "DO-" + std::to_string(i));
    tag(st, 17, "SETPT", "AO-1");
    for (int i = 18; i <= 32; ++i) tag(st, i, "VAR" + std::to_string(i), "Analog Variable");
    kova::RebuildTagNameIndex(st.tags, st.nameIndex);

    const char* const lines[30][3] = {
        {"@LEVEL1>80", "@PUMP1 = 1", "@PUMP1 = 0"},
        {"@LEVEL2>80&@LEVEL3<20", "@PUMP2 = 1", "@PUMP2 = 0"},
        {"@LEVEL4>=50|@LEVEL5>=50", "@PUMP3 = 1\r\n@VAR18 = @VAR18 + 1", "@PUMP3 = 0"},
        {"", "@VAR19 = (@LEVEL1 + @LEVEL2 + @LEVEL3 + @LEVEL4) / 4", ""},
        {"@VAR19>60", "@SETPT = @VAR19 * 0.5 + 10", "@SETPT = 20"},
        {"@HR>=8&@HR<18", "@PUMP4 = 1", "@PUMP4 = 0"},
        {"@SU=0", "@VAR20 = 0\r\n@VAR21 = 0", ""},
        {"", "@VAR20 = @VAR20 + 1", ""},
        {"@VAR20>100", "@VAR20 = 0\r\n@VAR21 = @VAR21 + 1", ""},
        {"", "@VAR22 = SIN(@VAR20 / 10) * 50 + 50", ""},
        {"@VAR22>75", "@PUMP5 = 1", "@PUMP5 = 0"},
        {"@LEVEL6<>@LEVEL7", "@VAR23 = ABS(@LEVEL6 - @LEVEL7)", "@VAR23 = 0"},
        {"@VAR23>5", "@PUMP6 = 1", "@PUMP6 = 0"},
        {"", "@VAR24 = SQR(@LEVEL8 * @LEVEL8 + 1)", ""},
        {"", "@VAR25 = @VAR25 * 0.9 + @LEVEL1 * 0.1", ""},
        {"@VAR25>@LEVEL1", "@VAR26 = 1", "@VAR26 = 0"},
        {"(@LEVEL1>10)&(@LEVEL2>10)&(@LEVEL3>10)", "@PUMP7 = 1", "@PUMP7 = 0"},
        {"", "@VAR27 = LOG(@LEVEL2 + 1) + EXP(0 - @LEVEL3 / 100)", ""},
        {"@MN=0&@SC<2", "@VAR28 = @VAR28 + 1", ""},
        {"", "@VAR29 = 2 ^ (@LEVEL4 / 50)", ""},
        {"@VAR29>3", "@PUMP8 = 1", "@PUMP8 = 0"},
        {"", "@VAR30 = ATN(@LEVEL5 / 10) * 57.29578", ""},
        {"@VAR30>45", "@VAR31 = COS(@VAR30 / 57.29578)", "@VAR31 = 1"},
        {"@DW=1|@DW=7", "@VAR32 = 1", "@VAR32 = 0"},
        {"@LEVEL1<5", "@SETPT = 0", ""},
        {"", "@VAR18 = @VAR18 - 1", ""},
        {"@VAR18<0", "@VAR18 = 0", ""},
        {"", "@VAR19 = @VAR19 * 1.0", ""},
        {"@LEVEL3<=@LEVEL4", "@VAR26 = @VAR26 + 0", "@VAR26 = 0"},
        {"", "@VAR27 = TAN(@LEVEL6 / 200)", ""},
    };
    kova::bench::InstallControlLines(st, lines, 30);
}

// New input values each pass, as the scan would read them.
void moveInputs(kova::Station& st, int pass) {
    for (int i = 1; i <= 8; ++i)
        st.tags[i].Value = static_cast<float>((pass * (i + 3) + i * 11) % 100);
}

void BM_RunControlsThirtyLines(benchmark::State& state) {
    kova::Station st;
    buildPlant(st);
    RunControls(st);  // the first pass builds each line's compiled image
    int pass = 0;
    const long long before = kova::bench::AllocationCount();
    for (auto _ : state) {
        moveInputs(st, ++pass);
        kova::RunControls(st);
    }
    const long long allocations = kova::bench::AllocationCount() - before;
    state.counters["allocs_per_pass"] = benchmark::Counter(static_cast<double>(allocations) /
                                                           static_cast<double>(state.iterations()));
}
BENCHMARK(BM_RunControlsThirtyLines);

// The same pass done on the code texts, decoding each one every time: what the compiled
// image saves.
void BM_EvaluateCodeTextsThirtyLines(benchmark::State& state) {
    kova::Station st;
    buildPlant(st);
    int pass = 0;
    const long long before = kova::bench::AllocationCount();
    for (auto _ : state) {
        moveInputs(st, ++pass);
        for (int i = 1; i <= st.control.ControlCount; ++i) {
            const kova::ControlLine& l = st.control.Lines[i];
            const std::int16_t r = kova::EvaluateIf(st, l.IfCode);
            const std::string& part = r > 0 ? l.ThenCode : r == 0 ? l.ElseCode : l.IfText;
            if (r < 0) continue;
            std::size_t pos = 0;
            while (pos < part.size()) {
                const std::size_t bang = part.find('!', pos);
                kova::ExecuteAssignment(st, part.substr(pos, bang - pos));
                pos = bang + 1;
            }
        }
    }
    const long long allocations = kova::bench::AllocationCount() - before;
    state.counters["allocs_per_pass"] = benchmark::Counter(static_cast<double>(allocations) /
                                                           static_cast<double>(state.iterations()));
}
BENCHMARK(BM_EvaluateCodeTextsThirtyLines);

void BM_CompileTypicalAssignment(benchmark::State& state) {
    kova::Station st;
    buildPlant(st);
    std::string code;
    std::string token;
    for (auto _ : state) {
        benchmark::DoNotOptimize(kova::CompileAssignment(
            st, "@VAR19 = (@LEVEL1 + @LEVEL2 + @LEVEL3 + @LEVEL4) / 4", code, token));
    }
}
BENCHMARK(BM_CompileTypicalAssignment);

}  // namespace
