#include "ostrelhook/dump.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"

#include <cstdarg>
#include <optional>
#include <utility>

namespace Ostrel {

using namespace Qt::StringLiterals;

using UIAbstraction::UIElement;

DumpFilter::DumpFilter(Mode mode, const QStringList &names, const QStringList &identifying)
    : m_mode(mode), m_names(names.begin(), names.end()), m_identifying(identifying.begin(), identifying.end())
{
}

bool DumpFilter::wants(const QString &property) const
{
    return identifies(property) || m_names.contains(property) == (m_mode == Only);
}

FilterObject filterObjectForOstrelObject(const SharedPtr<Object> &object, const DumpFilters &filters)
{
    for (const Class *type = object ? object->objectClass() : nullptr; type; type = type->superClass()) {
        if (const auto filter = filters.find(type->name().toStdString()); filter != filters.end())
            return FilterObject(filter->second);
    }
    return FilterObject();
}

LogInterface::~LogInterface() = default;

void LogInterface::log(int level, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QString text = QString::vasprintf(format, arguments);
    va_end(arguments);
    write(level, text);
}

namespace {

using FastDelegate = DumpObjectTreeDelegate;

/// The dump that runs. Delegates call back into dumpObjectTreeImpl(), which has no place for it.
struct Dump
{
    DumpOptions options;
    /// Delegates that could not prepare for the part of the tree that is being dumped.
    QList<const FastDelegate *> refused;
};

Dump &currentDump()
{
    static Dump dump;
    return dump;
}

/// Makes another dump the current one for its own lifetime.
class CurrentDump
{
public:
    explicit CurrentDump(const DumpOptions &options)
        : m_outer(std::exchange(currentDump(), Dump{options, {}}))
    {
    }
    ~CurrentDump() { currentDump() = std::move(m_outer); }
    Q_DISABLE_COPY_MOVE(CurrentDump)

private:
    Dump m_outer;
};

void logProblem(const QString &text)
{
    if (LogInterface *log = currentDump().options.log; log && !text.isEmpty())
        log->log(1, "%s", text.toUtf8().constData());
}

/// The dump delegate of an object; null when it has none, or one that refused.
const FastDelegate *fastDelegate(const SharedPtr<Object> &object)
{
    const auto *delegate = DelegateFactory::self()->delegate<FastDelegate>(object);
    return currentDump().refused.contains(delegate) ? nullptr : delegate;
}

/// Prepares a delegate for the part of the tree below an object, and lets it go at the end of its own
/// lifetime. While a delegate that failed to prepare is held here, the dump goes without it.
class EnteredDump
{
public:
    EnteredDump(const FastDelegate *delegate, const SharedPtr<Object> &root, const DumpFilters &filters)
        : m_delegate(delegate)
    {
        m_entered = delegate && delegate->enterDump(root, filters, &m_error);
        if (delegate && !m_entered)
            currentDump().refused.append(delegate);
    }
    ~EnteredDump()
    {
        QString error;
        if (m_entered && !m_delegate->leaveDump(&error))
            logProblem(error);
        if (m_delegate && !m_entered)
            currentDump().refused.removeOne(m_delegate);
    }
    Q_DISABLE_COPY_MOVE(EnteredDump)

    const QString &error() const { return m_error; }

private:
    const FastDelegate *m_delegate;
    bool m_entered;
    QString m_error;
};

/// Reads a property through its class. What fails there belongs to the log, not to the script that asked for
/// the dump.
std::optional<QString> propertyText(const SharedPtr<Object> &object, const Property *property)
{
    Inspector *inspector = Inspector::self();
    const bool hadError = inspector->hasError();
    const SharedPtr<Object> value = object->objectClass()->read(object, property);
    if (inspector->hasError() && !hadError) {
        logProblem(inspector->takeError());
        return std::nullopt;
    }
    return value && value->isPrimitive() ? std::optional(value->toQString()) : std::nullopt;
}

void addProperty(
    UIElement *element, const SharedPtr<Object> &object, const Property *property, bool identifying)
{
    const FastDelegate *fast = fastDelegate(object);
    if (fast && fast->setProperty(property, object, element, identifying))
        return;
    if (!property->type().isPrimitive())
        return;
    const std::optional<QString> text = propertyText(object, property);
    if (!text)
        return;
    if (identifying)
        element->setIdentifyingProperty(property->name(), *text);
    else
        element->setConcreteProperty(property->name(), *text);
}

void addProperties(UIElement *element, const SharedPtr<Object> &object, const DumpFilters &filters)
{
    const Class *type = object->objectClass();
    const FilterObject filter = filterObjectForOstrelObject(object, filters);
    for (int index = 0; index < type->numProperties(); ++index) {
        const Property *property = type->property(index);
        // one that a class below has replaced is not shown
        if (property && filter.isMatchedProperty(property->name())
            && type->findProperty(property->name()) == property)
            addProperty(element, object, property, filter.isIdentifyingProperty(property->name()));
    }
}

Rect<2> boundsOf(const SharedPtr<Object> &object)
{
    Rect<2> bounds{0, 0, -1, -1, -1};
    const FastDelegate *fast = fastDelegate(object);
    if (fast && fast->visibleGlobalBounds(object, &bounds))
        return bounds;
    const auto *geometry = DelegateFactory::self()->delegate<GeometryDelegate>(object);
    return geometry ? geometry->visibleGlobalBounds(object) : bounds;
}

void addScreenshot(UIElement *element, const SharedPtr<Object> &object)
{
    const DumpOptions &options = currentDump().options;
    const Rect<2> &bounds = element->bounds();
    if (!options.screenshots || bounds.width <= 0 || bounds.height <= 0)
        return;
    const FastDelegate *fast = fastDelegate(object);
    if (fast && fast->takeScreenshot(object, element))
        return;
    if (options.grabDesktop)
        element->setImage(options.grabDesktop(bounds));
}

ObjectList childrenOf(const SharedPtr<Object> &object)
{
    ObjectList children;
    const FastDelegate *fast = fastDelegate(object);
    if (fast && fast->children(object, &children))
        return children;
    const auto *hierarchy = DelegateFactory::self()->delegate(object);
    return hierarchy ? hierarchy->children(object) : ObjectList();
}

/// The element of an object, from its delegate where that makes one.
std::unique_ptr<UIElement> dumpObject(const SharedPtr<Object> &object, const DumpFilters &filters)
{
    UIElement *element = nullptr;
    QString error;
    const FastDelegate *fast = fastDelegate(object);
    if (fast && fast->dumpObject(object, true, &element, filters, &error))
        return std::unique_ptr<UIElement>(element);
    logProblem(error);
    return std::unique_ptr<UIElement>(dumpObjectTreeImpl(object, true, filters));
}

void addChildren(UIElement *element, const SharedPtr<Object> &object, const DumpFilters &filters)
{
    const FastDelegate *outer = DelegateFactory::self()->delegate<FastDelegate>(object);
    const ObjectList children = childrenOf(object);
    for (const SharedPtr<Object> &child : children) {
        if (!child)
            continue;
        // The delegate of another toolkit is told where its part of the tree begins.
        const FastDelegate *inner = DelegateFactory::self()->delegate<FastDelegate>(child);
        const EnteredDump entered(inner != outer ? inner : nullptr, child, filters);
        logProblem(entered.error());

        if (const FastDelegate *fast = fastDelegate(child); fast && fast->isTransparent(child))
            addChildren(element, child, filters);
        else if (std::unique_ptr<UIElement> dumped = dumpObject(child, filters))
            element->addChild(std::move(dumped));
    }
}

QString typeOf(const SharedPtr<Object> &object)
{
    const FastDelegate *fast = fastDelegate(object);
    return fast ? fast->simplifiedType(object) : simplifiedTypeName(*object->objectClass());
}

} // namespace

UIElement *dumpObjectTreeImpl(const SharedPtr<Object> &object, bool recursive, const DumpFilters &filters)
{
    if (!object || object->isNull())
        return nullptr;
    auto element = std::make_unique<UIElement>(typeOf(object), object->objectClass()->name());
    addProperties(element.get(), object, filters);
    element->setBounds(boundsOf(object));
    addScreenshot(element.get(), object);
    if (recursive)
        addChildren(element.get(), object, filters);
    return element.release();
}

FunctionCallResult<std::unique_ptr<UIElement>> dumpObjectTree(
    const SharedPtr<Object> &root, const DumpFilters &filters, const DumpOptions &options)
{
    if (!root || root->isNull())
        return Failure(u"Cannot dump a null object."_s);
    const CurrentDump current(options);
    const EnteredDump entered(DelegateFactory::self()->delegate<FastDelegate>(root), root, filters);
    if (!entered.error().isEmpty())
        return Failure(entered.error());
    std::unique_ptr<UIElement> element = dumpObject(root, filters);
    if (!element)
        return Failure(u"There is nothing to dump of this %1."_s.arg(root->objectClass()->name()));
    return element;
}

} // namespace Ostrel
