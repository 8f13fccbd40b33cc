// A run in which everything happens that a report can tell.
#pragma once

#include "host/report/results.h"

namespace Ostrel::Test {

inline Host::Step step(Host::Step::Kind kind, const QString &text, const Host::ScriptPlace &place = {})
{
    Host::Step made;
    made.kind = kind;
    made.text = text;
    made.place = place;
    return made;
}

inline Host::Attempt attempt(Host::ScriptEnd end, double milliseconds, std::vector<Host::Step> steps = {})
{
    Host::Attempt made;
    made.end = std::move(end);
    made.began = QDateTime(QDate(2024, 2, 29), QTime(13, 5, 9), Qt::UTC);
    made.milliseconds = milliseconds;
    made.steps = std::move(steps);
    return made;
}

/// A pass, a flaky one, a failure, an error on each of two tries and one that was not run.
inline Host::RunResult sampleRun()
{
    using namespace Host;
    using namespace Qt::StringLiterals;
    using Kind = Step::Kind;

    Step opened = step(Kind::Statement, u"startBrowser(\"shop\")"_s, {u"shop/buy.js"_s, 1});
    opened.milliseconds = 1234.5;
    Step clicked = step(Kind::Statement, u"clickButton(\"save\")"_s, {u"shop/buy.js"_s, 3});
    clicked.milliseconds = 12;
    Step holds = step(Kind::Verification, u"the total"_s, {u"shop/buy.js"_s, 4});
    holds.actual = holds.expected = u"3"_s;
    Step section = step(Kind::Section, u"The <cart>"_s, {u"shop/buy.js"_s, 2});
    section.steps = {clicked, holds};

    Step differs = step(Kind::Verification, u"the \"title\""_s, {u"shop/look.js"_s, 7});
    differs.passed = false;
    differs.actual = u"<b>\x01 & %1</b>"_s;
    differs.expected = u"it's"_s;
    Step picture = step(Kind::Screenshot, u"The page at the failure"_s);
    picture.png = "png";

    Step running = step(Kind::Statement, u"waitForObject(\"late\")"_s, {u"other/wait.js"_s, 2});
    running.ended = false;
    const ScriptEnd lost{Outcome::Error, u"The browser has closed or crashed"_s, {u"other/wait.js"_s, 2},
        {u"wait (other/wait.js:2)"_s, u"script (other/wait.js:5)"_s}};

    Attempt flaky = attempt({Outcome::Failed, u"1 of 1 verifications failed"_s, {}, {}}, 250, {differs});
    Attempt failed = attempt({Outcome::Failed, u"1 of 1 verifications failed"_s, {}, {}}, 500,
        {step(Kind::Log, u"looking around"_s), differs, picture,
            step(Kind::ObjectTree,
                u"<dump><element class=\"HTML_Document\" name=\"DOCUMENT\"><element class=\"HTML_Button\" "
                u"x=\"8\" y=\"9\" "
                "width=\"60\" height=\"22\"><property name=\"id\">save</property><property name=\"title\"/>"
                "</element></element></dump>"_s)});
    failed.diagnostics = u"a warning\n"_s;
    Attempt notRun;
    notRun.end.message = u"The run's limit of 60 s is over"_s;

    RunResult run;
    run.began = QDateTime(QDate(2024, 2, 29), QTime(13, 5, 9), Qt::UTC);
    run.milliseconds = 65432;
    run.scripts = {
        {u"shop/buy.js"_s, {attempt({}, 1500, {opened, section})}},
        {u"shop/again.js"_s, {flaky, attempt({}, 100)}},
        {u"shop/look.js"_s, {failed}},
        {u"other/wait.js"_s, {attempt(lost, 3000, {running}), attempt(lost, 2000)}},
        {u"other/late.js"_s, {notRun}},
    };
    return run;
}

} // namespace Ostrel::Test
