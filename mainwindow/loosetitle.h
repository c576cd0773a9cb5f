#pragma once

#include "dialogs/titlelist.h"

/// One title for the dialogs that work on a list, while the list editor is not loaded:
/// its row is the title itself.
class LooseTitle : public TitleList {
  public:
    LooseTitle(Document& document, std::int32_t title, QWidget* window)
        : m_document(document)
        , m_title(title)
        , m_window(window) {}

    Document& document() override { return m_document; }
    QWidget* Window() override { return m_window; }
    QFont ListFont() const override;
    std::int32_t RowCount() const override { return m_document.Subt.Count(); }
    std::vector<std::int32_t> SelectedRows() const override { return {m_title}; }
    std::int32_t SelectedItem() const override { return m_title; }
    void UnselectItem() override {}
    void SelectAll() override {}
    QString RowText(std::int32_t row) const override;
    QString RowStart(std::int32_t row) const override;
    QString RowDuration(std::int32_t row) const override;
    void SetRow(std::int32_t /*row*/, const QString& /*text*/, double /*start*/,
                double /*duration*/) override {}
    std::int32_t FirstMarkedTitle() const override { return 0; }
    std::int32_t SecondMarkedTitle() const override { return 0; }
    void ShowEdited(std::int32_t /*row*/) override {}
    void ShowAllEdited(std::span<const std::int32_t> /*rows*/) override {}
    void LoadList() override {}
    void ShowInstead(const SUBTITLES& /*titles*/) override {}
    void ShowOwn() override {}
    void GoToTitle(std::int32_t /*index*/) override {}

  private:
    Document& m_document;
    const std::int32_t m_title;
    QWidget* const m_window;
};
