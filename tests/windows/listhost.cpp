#include "tests/windows/listhost.h"

#include <QCoreApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>

ListHost::ListHost() {
    m_document.Subt.UndoEnabled(true);
    m_connection = m_document.Subscribe([this](const Change& change) {
        changes += change.kind != Change::Kind::Marks && change.kind != Change::Kind::Saved;
    });
    m_document.Subt.UndoChangedListLength = [this] {
        if (frmList* open = list.data())
            open->LoadList();
    };
    m_document.Subt.UndoPossible = [this](bool possible) {
        if (frmList* open = list.data())
            open->UndoPossible(possible);
    };
}

frmList& ListHost::Open() {
    list = new frmList(*this, nullptr);
    list->show();
    list->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(list));
    return List();
}

frmList& ListHost::List() const {
    frmList* open = list.data();
    if (open == nullptr)
        throw std::runtime_error("the list editor is not open");
    return *open;
}

void ListHost::Close() {
    if (frmList* open = list.data())
        open->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::vector<TestTitle> FiveTitles() {
    std::vector<TestTitle> titles;
    for (int i = 1; i <= 5; ++i)
        titles.push_back({i * 10.0, i * 10.0 + 2, "title " + std::to_string(i)});
    return titles;
}
