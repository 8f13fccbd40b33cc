// HtmlObjectDumpObjectTreeDelegate: dumps of pages from a snapshot.
#pragma once

#include "ostrelhook/dump.h"
#include "wrappers/web/export.h"

#include <json/value.h>

#include <map>
#include <utility>
#include <vector>

namespace Ostrel::WebWrapper {

class HTML_Object;

/// The rectangle of an object with the members x, y, width and height, as page functions give it. All four
/// are -1 where a member is missing or no number.
PAGEPROBELIB_EXPORT ScreenRectangle screenRectangleFromJson(const Json::Value &rectangle);

/// Serves dumps of elements. A dump asks each element for all its properties, its bounds and its text; one
/// round trip for each would take minutes. So the whole subtree comes in one call at the start of the dump
/// and all values in a second one, and the questions are answered from that.
///
/// Dumps inside a dump share its snapshot, which is dropped with the outermost one. Used from one thread.
class PAGEPROBELIB_EXPORT HtmlObjectDumpObjectTreeDelegate : public DumpObjectTreeDelegate
{
public:
    /// `log` is told about screenshots that fail; it is not owned.
    explicit HtmlObjectDumpObjectTreeDelegate(LogInterface *log);

    bool enterDump(SharedPtr<Object> root, const std::map<std::string, DumpFilter *> &filters,
        QString *error) const override;
    bool leaveDump(QString *error) const override;
    bool dumpObject(SharedPtr<Object> object, bool recursive, UIAbstraction::UIElement **element,
        const std::map<std::string, DumpFilter *> &filters, QString *error) const override;
    bool takeScreenshot(SharedPtr<Object> object, UIAbstraction::UIElement *element) const override;
    bool setProperty(const Property *property, SharedPtr<Object> object, UIAbstraction::UIElement *element,
        bool identifying) const override;
    bool children(SharedPtr<Object> object, ObjectList *children) const override;
    /// In pixels of the page's picture where the browser gives one, otherwise on the desktop.
    bool visibleGlobalBounds(SharedPtr<Object> object, Rect<2> *bounds) const override;

private:
    struct ObjectDumpData
    {
        /// The value of a property; null where there is none.
        const QString *value(QStringView name) const;

        /// By name, in its order. Not a map: there are hundreds of thousands of values, and few of an
        /// element.
        std::vector<std::pair<QString, QString>> values;
        /// These keep the wrappers of the snapshot alive.
        ObjectList children;
        ScreenRectangle screenRectangle;
        ScreenRectangle documentRectangle;
    };

    class Snapshot;

    const ObjectDumpData *dataOf(const SharedPtr<Object> &object) const;

    mutable std::map<const HTML_Object *, ObjectDumpData> m_snapshot;
    mutable unsigned int m_nesting = 0;
    LogInterface *m_log;
};

} // namespace Ostrel::WebWrapper
