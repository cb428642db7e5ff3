#include "app/Options.h"
#include "app/Usage.h"

#include <cstdio>

int main(int argc, char **argv)
{
    try {
        const nuvo::Command command = nuvo::parseCommandLine({argv + 1, argv + argc});
        if (const auto *print = std::get_if<nuvo::PrintOptions>(&command))
            std::fputs(print->text.toUtf8().constData(), stdout);
    } catch (const nuvo::UsageError &error) {
        std::fprintf(stderr, "nuvostat: %s\n", error.what());
        return 2;
    }
    return 0;
}
