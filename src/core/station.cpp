#include "core/station.h"

#include "core/configuration.h"
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
    // Nothing loaded yet: the empty configuration counts as saved, so nothing is asked
    // before it is replaced.
    RememberConfigurationAsSaved(*this);
}

}  // namespace kova
