#include "support/DeveloperWords.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QMutex>

namespace {

QMutex mutex;
QStringList lines; // under the mutex
QtMessageHandler usual = nullptr;

void hear(QtMsgType type, const QMessageLogContext &context, const QString &words)
{
    if (qstrcmp(context.category, "parloquin") != 0) {
        usual(type, context, words);
        return;
    }
    const QMutexLocker lock(&mutex);
    lines.append(words);
}

} // namespace

DeveloperWords::DeveloperWords(const QString &rules)
{
    lines.clear();
    QLoggingCategory::setFilterRules(rules);
    usual = qInstallMessageHandler(hear);
}

DeveloperWords::~DeveloperWords()
{
    qInstallMessageHandler(nullptr);
    QLoggingCategory::setFilterRules({});
}

QStringList DeveloperWords::heard() const
{
    const QMutexLocker lock(&mutex);
    return lines;
}
