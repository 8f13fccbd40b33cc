// HTML_Event: no objects, only the enum of the modifier keys.
#pragma once

#include "ostrelhook/class.h"

namespace Ostrel::WebWrapper {

class HTML_Event_Class : public Class
{
public:
    explicit HTML_Event_Class(Namespace *home);

    /// Frees the raw block; nothing is to be destroyed in it.
    void deleteObjectData(Object *object) override;

protected:
    std::unique_ptr<Enum> createEnum(int index) const override;
};

} // namespace Ostrel::WebWrapper
