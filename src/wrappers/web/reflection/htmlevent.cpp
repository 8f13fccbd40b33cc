#include "wrappers/web/reflection/htmlevent.h"

#include "wrappers/web/webobject.h"

#include <new>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

HTML_Event_Class::HTML_Event_Class(Namespace *home) : Class(u"HTML_Event"_s, home)
{
    setOwnMembers(0, 0, 1);
}

void HTML_Event_Class::deleteObjectData(Object *object)
{
    ::operator delete(object->data());
}

std::unique_ptr<Enum> HTML_Event_Class::createEnum(int index) const
{
    return std::make_unique<Enum>(const_cast<HTML_Event_Class *>(this), u"ModifierState"_s,
        QList<Enum::Item>{
            {u"AltKey"_s, AltKey},
            {u"ControlKey"_s, ControlKey},
            {u"ShiftKey"_s, ShiftKey},
            {u"RightButton"_s, RightButton},
            {u"ControlAlt"_s, ControlAlt},
            {u"ShiftAlt"_s, ShiftAlt},
            {u"ControlShift"_s, ControlShift},
        },
        index);
}

} // namespace Ostrel::WebWrapper
