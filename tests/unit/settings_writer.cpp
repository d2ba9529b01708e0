// settings_writer FILE KEY FIRST COUNT: sets KEY in [General] to FIRST, FIRST + 1, ... COUNT
// values.
#include "platform/modDeklarace.h"

#include <string>

int main(int argc, char** argv) {
    if (argc != 5) {
        return 2;
    }
    const int first = std::stoi(argv[3]);
    for (int i = first; i < first + std::stoi(argv[4]); ++i) {
        zvonivec::modDeklarace::WritePrivateProfileStringA("General", argv[2], std::to_string(i),
                                                           argv[1]);
    }
    return 0;
}
