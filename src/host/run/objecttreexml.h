// A dumped object tree as XML text.
#pragma once

#include "ostrelhook/uielement.h"

#include <QString>

namespace Ostrel::Host {

/// One XML element for each object: its class, its place on the screen where it has one, and its properties
/// as elements of their own names.
QString objectTreeXml(const UIAbstraction::UIElement &root);

} // namespace Ostrel::Host
