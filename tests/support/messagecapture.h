// MessageCapture: collects the Qt warnings of a test and fails it for those that it did not expect.
//
//     MessageCapture messages;
//     Settings settings(path);
//     EXPECT_EQ(messages.take(), QStringList{u"..."_s});
#pragma once

#include "support/printers.h"

#include <gtest/gtest.h>

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

#include <utility>

/// Takes every warning and critical message while it lives; one at a time. Messages that nobody took by then
/// fail the test. Other messages go where they went before.
class MessageCapture
{
public:
    MessageCapture()
    {
        EXPECT_EQ(current, nullptr) << "only one MessageCapture at a time";
        current = this;
        m_previous = qInstallMessageHandler(&MessageCapture::handle);
    }

    ~MessageCapture()
    {
        qInstallMessageHandler(m_previous);
        current = nullptr;
        for (const QString &message : std::as_const(m_messages))
            ADD_FAILURE() << "unexpected warning: " << message.toStdString();
    }

    MessageCapture(const MessageCapture &) = delete;
    MessageCapture &operator=(const MessageCapture &) = delete;

    /// The messages since the last call, oldest first.
    QStringList take()
    {
        const QMutexLocker locker(&m_mutex);
        return std::exchange(m_messages, {});
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (type == QtWarningMsg || type == QtCriticalMsg) {
            const QMutexLocker locker(&current->m_mutex);
            current->m_messages += message;
        } else if (current->m_previous) {
            current->m_previous(type, context, message);
        }
    }

    static inline MessageCapture *current = nullptr;

    QMutex m_mutex;
    QStringList m_messages;
    QtMessageHandler m_previous = nullptr;
};
