#include "ui/about/about_view.h"

#include <QTest>
#include <QUrl>

#include <gmock/gmock.h>

#include "engine/hosts.h"
#include "support/print_to.h"
#include "ui/kit/button.h"
#include "ui/kit/label.h"
#include "widget_support.h"

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

TEST(About, every_link_opens_an_address_of_the_maker) {
    QList<QUrl> opened;
    AboutView about(u"2.5"_s, [&](const QUrl& url) { opened << url; });
    showActive(about);
    for (Button* button : about.findChildren<Button*>()) {
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_FALSE(button->accessibleName().isEmpty());
    }

    QStringList schemes;
    for (const QUrl& url : opened) {
        EXPECT_TRUE(url.isValid()) << qPrintable(url.toString());
        schemes << url.scheme();
        const QString domain = url.host().isEmpty() ? url.path().section(u'@', 1) : url.host();
        EXPECT_FALSE(domain.isEmpty());
        EXPECT_TRUE(hosts::website.endsWith(domain)) << qPrintable(domain);
    }
    EXPECT_EQ(schemes, (QStringList{u"https"_s, u"mailto"_s, u"https"_s, u"https"_s}));
}

TEST(About, the_version_is_the_one_that_runs) {
    const AboutView about(u"2.5"_s, [](const QUrl&) {});
    QStringList texts;
    for (const Label* label : about.findChildren<Label*>())
        texts << label->text();
    EXPECT_THAT(texts,
                testing::Contains(testing::Property(&QString::toStdString, testing::EndsWith(" 2.5"))));
}

}  // namespace
}  // namespace tralio
