// What evaluateAsJson() puts around an expression: its value or its exception comes back as JSON.
#pragma once

#include <QStringView>

namespace Ostrel::WebWrapper {

inline constexpr QStringView envelopeHead = u"(function() {\n  try {\n    return JSON.stringify({'result': ";
inline constexpr QStringView envelopeTail
    = u"});\n  } catch( e ) {\n    return JSON.stringify({'error': {'name': e['name'], 'message': "
      "e['message'], 'file': e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});\n  }\n}());";

/// The expression in an envelope; a null view in any other script.
inline QStringView expressionInEnvelope(QStringView script)
{
    if (!script.startsWith(envelopeHead) || !script.endsWith(envelopeTail))
        return {};
    return script.mid(envelopeHead.size(), script.size() - envelopeHead.size() - envelopeTail.size());
}

} // namespace Ostrel::WebWrapper
