// Parses any words as a command line. The result is exactly one of three: work to do, a text to print, or a
// complaint. The work is not done.

#include "cli/CommandLine.h"
#include "tests/fuzz/Require.h"

#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A zero byte ends each word, as for every program.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::vector<const char*> words{"tobrimax-cli"};
    for (std::size_t at = 0; at < bytes.size(); at = bytes.find('\0', at) + 1) {
        words.push_back(bytes.c_str() + at);
        if (bytes.find('\0', at) == std::string::npos)
            break;
    }
    const int count = static_cast<int>(words.size());
    words.push_back(nullptr);
    const ParsedCommandLine parsed = parseCommandLine(count, words.data());
    require((parsed.work ? 1 : 0) + (parsed.text.empty() ? 0 : 1) + (parsed.complaint.empty() ? 0 : 1) == 1);
    return 0;
}
