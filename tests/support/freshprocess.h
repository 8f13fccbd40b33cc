// inFreshProcess: runs code in a process of its own, for values that a process fixes at first use.
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QStringList>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

/// Runs `code` in a fork of this process and gives its answer; empty and a test failure when it crashed.
/// What this process has fixed already is fixed there too, so a test program calls such code nowhere else.
/// Expectations inside `code` would not be heard: let it answer with what there is to compare.
inline QStringList inFreshProcess(const std::function<QStringList()> &code)
{
    int channel[2];
    if (pipe(channel) != 0) {
        ADD_FAILURE() << "no pipe";
        return {};
    }

    const pid_t child = fork();
    if (child == 0) {
        close(channel[0]);
        QByteArray answer;
        QDataStream stream(&answer, QIODevice::WriteOnly);
        stream << code();
        const ssize_t written = write(channel[1], answer.constData(), static_cast<size_t>(answer.size()));
        _exit(written == answer.size() ? 0 : 1);
    }
    close(channel[1]);

    QByteArray received;
    char buffer[4096];
    for (ssize_t length; (length = read(channel[0], buffer, sizeof buffer)) > 0;)
        received.append(buffer, length);
    close(channel[0]);

    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the process ended with status " << status;
    QStringList answer;
    QDataStream stream(received);
    stream >> answer;
    return answer;
}
