// kova-cli: the engine's command-line front end.
#include <cstdio>
#include <cstring>

namespace {
void usage(std::FILE* out) {
    std::fputs(
        "usage: kova-cli dump FILE.SUF\n"
        "       kova-cli build FILE.json -o FILE.SUF\n"
        "       kova-cli run FILE.SUF [--ticks N] [--start \"YYYY-MM-DD HH:MM:SS.mmm\"] [--poll] [--log] [--save OUT.SUF]\n"
        "       kova-cli check FILE.SUF\n",
        out);
}
}  // namespace

int main(int argc, char** argv) {
    if (argc >= 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        usage(stdout);
        return 0;
    }
    std::fputs("kova-cli: no command given\n", stderr);
    usage(stderr);
    return 2;
}
