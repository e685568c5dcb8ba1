// A tree view: nodes addressed by an index from 1, in the order in which they were added.
#pragma once

#include <string>
#include <vector>

#include "forms/control.h"

namespace vantrel::forms {

class Tree : public Control {
  public:
    struct Node {
        std::string text{};
        std::string tag{};
        int parent = 0;  // index of the parent node, 0 for a root node
        int image = 0;   // picture numbers from 1, 0 for none
        int selected_image = 0;
    };
    Tree(Form& owner, std::string name);
    int Count() const { return static_cast<int>(nodes_.size()); }
    const Node& At(int index) const { return nodes_.at(static_cast<std::size_t>(index - 1)); }
    // Adds a node below an earlier one and returns its index. No such parent: error 380.
    int Add(Node node);
    void SetImages(int index, int image, int selected_image);
    void Clear();
    int Selected() const { return selected_; }  // 0 for none
    // 0 selects none. Out of range: error 380.
    void Select(int index);
    std::function<void(int button)> MouseDown;  // 2: right button
    void UserSelect(int index);                 // what the user does; the screen shows it already
    void UserMouseDown(int button) { Raise(MouseDown, button); }

  private:
    std::vector<Node> nodes_;
    int selected_ = 0;
};

}  // namespace vantrel::forms
