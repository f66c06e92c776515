#include "support/ModemBus.h"

#include "Parloquin/Platform/Telephony.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
constexpr int patience = 20000; // ms
const QString shell = u"/bin/sh"_s;
}

ModemBus::ModemBus()
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + m_folder.filePath(u"bus"_s).toUtf8());
}

ModemBus::~ModemBus()
{
    EXPECT_FALSE(QFile::exists(m_folder.filePath(u"bus-started"_s))) << "by the kit";
}

void ModemBus::start(const QString &program)
{
    auto process = std::make_unique<QProcess>();
    process->start(shell, { QStringLiteral(MODEMS), m_folder.path(), program });
    EXPECT_TRUE(process->waitForReadyRead(patience)) << qPrintable(program);
    m_programs[program] = std::move(process);
}

void ModemBus::tell(const QStringList &words)
{
    QProcess told;
    told.setProcessChannelMode(QProcess::MergedChannels);
    told.start(shell, QStringList { QStringLiteral(MODEMS), m_folder.path() } + words);
    EXPECT_TRUE(told.waitForFinished(patience)) << qPrintable(words.join(u' '));
    EXPECT_EQ(told.exitCode(), 0) << told.readAll().constData();
}

void ModemBus::play(const QByteArray &steps)
{
    for (const QByteArray &step : steps.split(';')) {
        QStringList words = QString::fromUtf8(step.simplified()).split(u' ');
        if (words[0] == u"start") {
            start(words[1]);
        } else if (words[0] == u"end") {
            m_programs.erase(words[1]);
        } else if (words[0] == u"ask") {
            parloquin::Telephony::shared().ask();
        } else {
            tell(words.replaceInStrings(u"locked"_s, QString()));
        }
    }
}
