// What the wrapper classes' own headers need to compose script and messages; scripttext.h has the rest.
#pragma once

#include <QString>

namespace Ostrel::WebWrapper {

/// A reference or expression that is pasted into script as it stands, on purpose.
struct Expr
{
    QString text;
};

/// A message shape filled in one go, so that a "%1" inside a text stays.
template <typename... Texts>
QString message(QStringView shape, const Texts &...texts)
{
    return shape.toString().arg(texts...);
}

} // namespace Ostrel::WebWrapper
