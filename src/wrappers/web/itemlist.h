// The item list: the compact text in which a page tells the items of an item view.
#pragma once

#include "ostrelhook/object.h"

#include <QString>

namespace Ostrel::WebWrapper {

class HTMLComponent;

/// The objects of "name|reference~type#" records, in order. "[err]", which stands for a failed call of the
/// page, and the empty text give none; an unfinished last record is left out.
ObjectList objectsFromItemList(HTMLComponent *component, const QString &text);

/// The objects of the list that a script of the page gives. A failure goes to standard error and gives none.
ObjectList fetchItems(HTMLComponent *component, const QString &script);

} // namespace Ostrel::WebWrapper
