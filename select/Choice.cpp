#include "select/Choice.h"

namespace nuvo {

QStringList Choice::terms(ControlSet set) const
{
    QStringList result;
    for (int j = 1; j <= count(); ++j) {
        if (set & (ControlSet(1) << (j - 1)))
            result.append(term(j));
    }
    return result;
}

} // namespace nuvo
