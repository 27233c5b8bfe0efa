// The count of COM objects that are alive, and their names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kit {

// Base of every object that the kit counts. The name must outlive the object.
class LiveObject {
  public:
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;

  protected:
    explicit LiveObject(std::string_view name);
    ~LiveObject();

  private:
    friend std::vector<std::string> liveObjectNames();
    std::string_view name_;
    LiveObject* previous_ = nullptr;
    LiveObject* next_;
};

// How many objects are alive in this program or shared library: zero when nothing leaks.
int liveObjects();

// Their class names, the youngest first.
std::vector<std::string> liveObjectNames();

} // namespace kit
