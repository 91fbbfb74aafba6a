#include "ui/about/about_view.h"

#include <QTest>
#include <QUrl>

#include "engine/hosts.h"
#include "support/testing.h"
#include "ui/kit/button.h"
#include "widget_support.h"

namespace tralio {
namespace {

TEST(About, shows_the_version_that_runs_and_links_that_lead_to_the_maker) {
    QList<QUrl> opened;
    AboutView about(u"2.5"_s, [&](const QUrl& url) { opened << url; });
    showActive(about);
    EXPECT_FALSE(textsIn(about).filter(u" 2.5"_s).isEmpty());

    for (Button* button : visibleParts<Button>(about)) {
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_FALSE(button->accessibleName().isEmpty());
    }
    QStringList schemes;
    for (const QUrl& url : opened) {
        schemes << url.scheme();
        const QString domain = url.host().isEmpty() ? url.path().section(u'@', 1) : url.host();
        EXPECT_FALSE(domain.isEmpty());
        EXPECT_TRUE(hosts::website.endsWith(domain)) << qPrintable(domain);
    }
    EXPECT_EQ(schemes, (QStringList{u"https"_s, u"mailto"_s, u"https"_s, u"https"_s}));
}

}  // namespace
}  // namespace tralio
