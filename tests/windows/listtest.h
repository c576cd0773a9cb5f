#pragma once

#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "platform/settings.h"
#include "tests/windows/drive.h"
#include "tests/windows/listhost.h"

#include <QItemSelectionModel>
#include <QSettings>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

/// A list editor on five titles, with settings of its own.
class ListTest : public testing::Test {
  protected:
    ListTest() { QSettings("Tevo", "Quelmar").clear(); }
    ~ListTest() override { host.Close(); }

    SUBTITLES& Subt() { return host.document().Subt; }
    Document& document() { return host.document(); }
    frmList& List() { return host.List(); }

    void Fill(const std::vector<TestTitle>& titles) {
        for (const TestTitle& title : titles)
            Subt().Add(title.start, title.end, title.text);
    }
    frmList& Open(const std::vector<TestTitle>& titles = FiveTitles()) {
        Fill(titles);
        return host.Open();
    }

    QString Cell(std::int32_t row, int column) {
        return List().LV->model()->index(row - 1, column).data().toString();
    }
    /// Black where the row has no colour of its own.
    QColor Colour(std::int32_t row) {
        const QVariant colour = List().LV->model()->index(row - 1, 0).data(Qt::ForegroundRole);
        return colour.isValid() ? colour.value<QColor>() : QColor(Qt::black);
    }
    void Click(std::int32_t row, Qt::KeyboardModifiers modifiers = {}) {
        const QModelIndex index = List().LV->model()->index(row - 1, 0);
        List().LV->scrollTo(index);
        QTest::mouseClick(List().LV->viewport(), Qt::LeftButton, modifiers,
                          List().LV->visualRect(index).center());
    }
    void Select(const std::vector<std::int32_t>& rows) {
        List().LV->clearSelection();
        for (const std::int32_t row : rows)
            List().LV->selectionModel()->select(List().LV->model()->index(row - 1, 0),
                                                QItemSelectionModel::Select |
                                                    QItemSelectionModel::Rows);
    }
    bool ButtonEnabled(const char* key) { return Child<QToolButton>(List(), key).isEnabled(); }

    inline static const QColor Plain{Qt::black};
    inline static const QColor Edited{0xBF, 0, 0};
    inline static const QColor First{0, 0, 0xFF};
    inline static const QColor Second{0, 0x7F, 0};

    ListHost host;
};
