#include "host/record/recordedscript.h"

#include "host/record/statementtext.h"
#include "host/report/reportfile.h"

#include <algorithm>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

void RecordedScript::insertBeforeLast(const ScriptLine &line)
{
    for (std::size_t i = m_lines.size(); i > 0; --i) {
        if (m_lines[i - 1].origin == LineOrigin::Remark)
            continue;
        m_lines.insert(m_lines.begin() + std::ptrdiff_t(i - 1), line);
        return;
    }
    append(line);
}

void RecordedScript::takeBackPresses(const QString &object, int most)
{
    for (int taken = 0; taken < most && !m_lines.empty(); ++taken) {
        const ScriptLine &last = m_lines.back();
        if (last.origin != LineOrigin::Press || last.object != object)
            return;
        m_lines.pop_back();
    }
}

void RecordedScript::remark(const QString &text)
{
    const ScriptLine line{remarkText(text), {}, LineOrigin::Remark};
    if (m_lines.empty() || m_lines.back().text != line.text)
        append(line);
}

QStringList RecordedScript::lines() const
{
    QStringList texts;
    for (const ScriptLine &line : m_lines)
        texts.append(line.text);
    return texts;
}

QString RecordedScript::text() const
{
    return u"// Recorded by pageprobe. Run it with: pageprobe run FILE\n%1\n"_s.arg(lines().join(u'\n'));
}

FunctionCallResult<void> RecordedScript::save(const QString &fileName) const
{
    if (const auto written = writeWhole(fileName, text().toUtf8()); written.failed())
        return Failure(u"Cannot write the script '%1': %2."_s.arg(fileName, written.error));
    return {};
}

} // namespace Ostrel::Host
