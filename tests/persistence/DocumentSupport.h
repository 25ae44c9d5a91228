// Files and their faults, in short forms.
#pragma once

#include "persistence/DocumentFile.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QString>

namespace pointloom {

inline void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

inline QByteArray readFile(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// The message with which `action` fails; fails the test when it does not.
template <class Action>
std::string documentFault(const Action& action) {
    try {
        action();
    } catch (const DocumentError& error) {
        return error.what();
    }
    ADD_FAILURE() << "did not fail";
    return {};
}

}
