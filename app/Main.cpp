#include <cstdio>

int main()
{
    std::puts("nuvostat " NUVO_VERSION);
    return 0;
}
