#include <platform/Errors.h>

int main()
{
    try {
        throw EDatabaseError(QStringLiteral("asked, and there"));
    } catch (const EPlatformError &error) {
        return error.Message() == QStringLiteral("asked, and there") ? 0 : 1;
    }
}
