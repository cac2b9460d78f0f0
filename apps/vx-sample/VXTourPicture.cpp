#include "VXTourPicture.h"

#include "VXTourRow.h"

#include <QtGui/QImage>
#include <QtGui/QPixmap>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array columnWidths{36, 350, 660, 80};
constexpr int leastRowHeight = 26;
constexpr int margin = 20;

QTableWidgetItem* item(const QString& theText)
{
    auto* made = new QTableWidgetItem(theText); // the table takes it over
    made->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return made;
}

void fillRow(QTableWidget& theTable, int theLine, const VXTourRow& theRow)
{
    QStringList answer{theRow.answer};
    for (const QString& complaint : theRow.complaints)
        answer << u"! %1"_s.arg(complaint);
    const std::array texts{QString::number(theLine + 1), theRow.what, answer.join(u'\n'),
                           theRow.isGood() ? u"✓ yes"_s : u"✗ no"_s};
    for (size_t i = 0; i < texts.size(); ++i)
        theTable.setItem(theLine, static_cast<int>(i), item(texts[i]));

    theTable.item(theLine, 3)
        ->setForeground(theRow.isGood() ? QColor(0x17, 0x69, 0x2B) : QColor(0xA0, 0x10, 0x10));
    if (!theRow.isGood())
        for (int column = 0; column < theTable.columnCount(); ++column)
            theTable.item(theLine, column)->setBackground(QColor(0xFD, 0xE8, 0xE8));
}

void styleTable(QTableWidget& theTable)
{
    theTable.setHorizontalHeaderLabels(
        {u""_s, u"What was done"_s, u"What came back"_s, u"Checked"_s});
    theTable.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    theTable.verticalHeader()->hide();
    theTable.verticalHeader()->setMinimumSectionSize(leastRowHeight);
    theTable.setFrameShape(QFrame::NoFrame);
    theTable.setShowGrid(false);
    theTable.setAlternatingRowColors(true);
    theTable.setWordWrap(true);
    theTable.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    theTable.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    theTable.setSelectionMode(QAbstractItemView::NoSelection);
    theTable.setFocusPolicy(Qt::NoFocus);
    for (size_t i = 0; i < columnWidths.size(); ++i)
        theTable.setColumnWidth(static_cast<int>(i), columnWidths[i]);
}

/// As large as all of its rows: a picture does not scroll.
void fitTable(QTableWidget& theTable)
{
    theTable.resizeRowsToContents();
    int width = 0;
    for (int column = 0; column < theTable.columnCount(); ++column)
        width += theTable.columnWidth(column);
    int height = theTable.horizontalHeader()->sizeHint().height();
    for (int row = 0; row < theTable.rowCount(); ++row)
        height += theTable.rowHeight(row);
    theTable.setFixedSize(width, height);
}

} // namespace

VXTourPicture::VXTourPicture(const QList<VXTourRow>& theRows)
    : myRows(theRows)
{
}

QImage VXTourPicture::render() const
{
    QWidget page;
    page.setAttribute(Qt::WA_DontShowOnScreen);
    page.setStyleSheet(u"QWidget { background: white; color: #222; font-family: 'DejaVu Sans'; "
                       "font-size: 13px; }"
                       "QTableWidget { alternate-background-color: #f5f7f9; }"
                       "QTableWidget::item { padding: 4px; }"
                       "QHeaderView::section { background: white; border: none; "
                       "border-bottom: 2px solid #456; padding: 6px 4px; font-weight: bold; }"
                       "QLabel#title { font-size: 20px; font-weight: bold; }"_s);

    const auto good = std::ranges::count_if(myRows, &VXTourRow::isGood);
    auto* title = new QLabel(u"VXNetworking: the tour"_s, &page);
    title->setObjectName(u"title"_s);
    auto* summary = new QLabel(
        u"%1 of %2 rows are what the simulator recorded (method, address, headers, SHA-256 of the "
        "body)."_s.arg(QString::number(good), QString::number(myRows.size())),
        &page);
    auto* table = new QTableWidget(static_cast<int>(myRows.size()),
                                   static_cast<int>(columnWidths.size()), &page);
    styleTable(*table);
    for (qsizetype line = 0; line < myRows.size(); ++line)
        fillRow(*table, static_cast<int>(line), myRows.at(line));

    auto* layout = new QVBoxLayout(&page);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(title);
    layout->addWidget(summary);
    layout->addWidget(table);
    page.ensurePolished();
    fitTable(*table);
    page.adjustSize();
    page.show(); // lays the table out; nothing appears
    fitTable(*table);
    page.adjustSize();
    return page.grab().toImage();
}
