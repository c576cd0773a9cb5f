#pragma once

#include "listeditor/editorhost.h"
#include "listeditor/frmList.h"

#include <QPointer>

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Stands for the main window: owns the document, forwards the list's events as
/// the main window does, and keeps what the list editor asked of it.
class ListHost : public EditorHost {
  public:
    ListHost();

    Document& document() override { return m_document; }
    void MediaPosition(double seconds) override { positions.push_back(seconds); }
    void Listen(double from, double to) override { listened.emplace_back(from, to); }
    std::optional<FitSource> FilmSound() const override { return sound; }
    void ShowInstead(const SUBTITLES& titles) override { shownInstead = titles; }
    void ShowOwn() override { shownInstead.reset(); }
    std::int32_t ShownTitle() const override { return shownTitle; }
    void EditButtonsEnabled(bool enabled) override { editButtons = enabled; }

    frmList& Open();
    /// The open list editor; throws when there is none.
    frmList& List() const;
    void Close();

    std::vector<double> positions;
    std::vector<std::pair<double, double>> listened;
    std::optional<FitSource> sound;
    /// What film and lane show in place of the document's titles.
    std::optional<SUBTITLES> shownInstead;
    std::int32_t shownTitle = 1;
    std::optional<bool> editButtons;
    /// Steps that changed titles.
    int changes = 0;
    QPointer<frmList> list;

  private:
    Document m_document;
    Connection m_connection;
};

struct TestTitle {
    double start;
    double end;
    std::string text;
};

/// Five titles of two seconds, every ten seconds from 10 s.
std::vector<TestTitle> FiveTitles();
