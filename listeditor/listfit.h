#pragma once

#include "dialogs/fithost.h"
#include "listeditor/editorhost.h"

class frmList;

/// What the fitting dialog works on: the document, the film, and the list editor where it is
/// open. The list shows what is proposed, and its rows are coloured as edited in the end.
class ListFit : public FitHost {
  public:
    /// `list`: null while the list editor is not open.
    ListFit(frmList* list, EditorHost& host)
        : m_list(list)
        , m_host(host) {}

    SUBTITLES& FitTitles() override { return m_host.document().Subt; }
    std::span<const KnownStarts::Known> PlacedTitles() const override {
        return m_host.document().PlacedTitles();
    }
    std::vector<FitAnchor> FitAnchors() const override;
    QRect FilmPlace() const override { return m_host.FilmPlace(); }
    void Listen(double from, double to) override { m_host.Listen(from, to); }
    void ShowProposed(std::span<const FitTimes> times) override;
    void Fitted(std::span<const std::int32_t> rows) override;

  private:
    frmList* m_list;
    EditorHost& m_host;
    bool m_shown = false;
};
