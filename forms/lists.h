// Lists of text (the drop-down list and the list box) and the tree. An index out of range raises
// error 380.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace vantrel::forms {

// What these lists and the file list share: entries, a selected index (-1 for none), Click when an
// entry is chosen.
class List : public Control {
  public:
    Event Click;
    int Count() const { return static_cast<int>(items_.size()); }
    // The entry at `index`, "" when there is none.
    std::string Item(int index) const;
    int Index() const { return index_; }
    // Chooses an entry (-1: none) and always raises Click. Out of range: error 380.
    void SetIndex(int index);
    void Add(const std::string& text);
    // Removes an entry. The selected one leaves no selection and raises no event.
    void Remove(int index);
    void Clear() { Replace({}); }
    // The number of removals. While it stays the same, entries were only added at the end, and a
    // view adds the new ones instead of reading all again.
    int Removals() const { return removals_; }
    // Text of the selected entry, "" without one.
    std::string Text() const { return Item(index_); }
    // Puts the selection back without raising Click.
    void RestoreIndex(int index);

  protected:
    List(Form& owner, Kind kind, std::string name) : Control(owner, kind, std::move(name)) {}
    // Takes other entries, of which none is selected.
    void Replace(std::vector<std::string> items);

  private:
    std::vector<std::string> items_;
    int index_ = -1;
    int removals_ = 0;
};

// A drop-down list: the text is always one of the entries, or empty.
class ComboBox : public List {
  public:
    ComboBox(Form& owner, std::string name) : List(owner, Kind::kComboBox, std::move(name)) {}
    // Selects the first entry equal to `text` without regard to case ("" selects none) and raises
    // Click; the text is then the entry as listed. No such entry: error 383.
    void SetText(const std::string& text);
    // The first entry equal to `text` without regard to case; -1 for none.
    int IndexOf(const std::string& text) const;
};

class ListBox : public List {
  public:
    ListBox(Form& owner, std::string name) : List(owner, Kind::kListBox, std::move(name)) {}
};

// A tree of nodes, with indices from 1 in the order of adding.
class Tree : public Control {
  public:
    struct Node {
        std::string text{};
        std::string tag{};
        int parent = 0;  // index of the parent node, 0 for a root node
        int image = 0;   // picture numbers from 1, 0 for none
        int selected_image = 0;
    };
    Tree(Form& owner, std::string name) : Control(owner, Kind::kTree, std::move(name)) {}
    int Count() const { return static_cast<int>(nodes_.size()); }
    const Node& At(int index) const { return nodes_.at(static_cast<std::size_t>(index - 1)); }
    // Adds a node below an earlier one and returns its index. No such parent: error 380.
    int Add(Node node);
    void SetImages(int index, int image, int selected_image);
    void Clear();
    int Clears() const { return clears_; }      // how often it was cleared
    int Selected() const { return selected_; }  // 0 for none
    // 0 selects none. Out of range: error 380.
    void Select(int index);
    Event NodeClick;                            // the user has selected another node
    std::function<void(int button)> MouseDown;  // 2: right button, or the menu key
    void UserSelect(int index);                 // by the user; the screen shows it already
    void UserMouseDown(int button) { Raise(MouseDown, button); }

  private:
    void MarkSelected(int index);
    std::vector<Node> nodes_;
    int selected_ = 0;
    int clears_ = 0;
};

}  // namespace vantrel::forms
