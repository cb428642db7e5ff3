#pragma once

#include <QString>

namespace nuvo {

/// What the form designer is told of a component class beside the catalogue.
struct ComponentDetails
{
    const char *className;
    const char *header;    ///< as a program includes it
    const char *firstName; ///< of a new one; the designer numbers the others
    const char *whatsThis;
};

/// nullptr for a class that is none of ours.
const ComponentDetails *componentDetails(const QString &className);

/// What a published property is, in a sentence for its tool tip; empty for a name that is none of ours.
QString propertyToolTip(const QString &property);

} // namespace nuvo
