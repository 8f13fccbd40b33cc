// ArrayClass: script arrays as arguments and results.
#pragma once

#include "ostrelhook/class.h"

namespace Ostrel {

/// The class of script arrays. An array object owns its list of items.
class OSTRELHOOK_EXPORT ArrayClass : public Class
{
public:
    explicit ArrayClass(Namespace *home);

    /// A parameter that takes an array.
    static Argument arrayClassArg(const QString &name);
    /// A new array of these items.
    static SharedPtr<Object> wrapObject(const ObjectList &items);
    /// The items of an array; a null or other object has none. `ok`, when given, tells whether it is an
    /// array.
    static ObjectList unwrapObject(const SharedPtr<Object> &array, bool *ok = nullptr);

    void deleteObjectData(Object *object) override;
};

} // namespace Ostrel
