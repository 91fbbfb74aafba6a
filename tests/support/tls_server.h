#pragma once

#include <QRegularExpression>
#include <QTemporaryDir>

#include "support/files.h"

namespace tralio {

using namespace Qt::StringLiterals;

/// An `openssl s_server`, with a certificate of the authority that its clients trust, or of an unknown one.
struct TlsServer {
    TlsServer(const QTemporaryDir& folder, const QStringList& options) {
        process.setWorkingDirectory(folder.path());
        process.start(
            u"openssl"_s, QStringList{u"s_server"_s, u"-accept"_s, u"127.0.0.1:0"_s, u"-www"_s} + options);
        while (process.waitForReadyRead(5000))
            if (const auto found = QRegularExpression(u"ACCEPT 127.0.0.1:(\\d+)"_s)
                                       .match(QString::fromUtf8(output += process.readAllStandardOutput()));
                found.hasMatch()) {
                url = u"https://127.0.0.1:%1/v1"_s.arg(found.captured(1));
                return;
            }
        qFatal("openssl does not serve: %s", process.readAllStandardError().constData());
    }
    ~TlsServer() {
        process.kill();
        process.waitForFinished();
    }

    QProcess process;
    QByteArray output;
    QString url;
};

/// Makes an authority, and certificates by it for this machine: a valid one, an expired one, and one for
/// another host.
inline void makeCertificates(const QTemporaryDir& folder) {
    runToEnd(u"sh"_s,
        {u"-ec"_s,
            uR"(
        openssl req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.pem -subj /CN=Authority -days 2
        issue() {
            openssl req -newkey rsa:2048 -nodes -keyout $1.key -out $1.csr -subj /CN=$1
            printf "subjectAltName=$2" >$1.ext
            mkdir -p $1.db && : >$1.db/index && echo 01 >$1.db/serial
            printf '[ca]\ndefault_ca=a\n[a]\nnew_certs_dir=.\ndatabase=%s.db/index\nserial=%s.db/serial\ndefault_md=sha256\npolicy=p\n[p]\ncommonName=supplied\n' $1 $1 >$1.cnf
            openssl ca -batch -config $1.cnf -cert ca.pem -keyfile ca.key -in $1.csr -out $1.pem -extfile $1.ext -startdate $3 -enddate $4
        }
        issue good IP:127.0.0.1 20200101000000Z 20491231000000Z
        issue expired IP:127.0.0.1 20200101000000Z 20210101000000Z
        issue other DNS:other.test 20200101000000Z 20491231000000Z
        openssl req -x509 -newkey rsa:2048 -nodes -keyout self.key -out self.pem -subj /CN=self -addext subjectAltName=IP:127.0.0.1 -days 2
    )"_s},
        folder.path());
}

}  // namespace tralio
