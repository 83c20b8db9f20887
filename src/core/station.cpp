#include "core/station.h"

#include "platform/null_platform.h"
#include "tags/tag_table.h"

namespace kova {

namespace {
NullPortIo gNullPort;
SystemClock gSystemClock;
NullPrompter gNullPrompter;
SilentBeeper gSilentBeeper;
NullStatusSink gNullStatus;
NullScanTimer gNullTimer;
}  // namespace

Platform::Platform()
    : port(&gNullPort),
      clock(&gSystemClock),
      prompter(&gNullPrompter),
      beeper(&gSilentBeeper),
      status(&gNullStatus),
      timer(&gNullTimer),
      steady(&TheSteadyClock()) {}

Station::Station() {
    InitSystemTags(tags);
    RebuildTagNameIndex(tags, nameIndex);
    BuildIOList(profile, kDaqTest);
    // Nothing loaded yet: the empty configuration counts as saved (an empty
    // savedConfiguration stands for it), so nothing is asked before it is replaced.
}

}  // namespace kova
