#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

class BASEApiMethod;
class BASEApiMethodObject;
class BASEApiObject;

/**
 * Creates instances by name, one factory per base class. File-scope registrations of the classes fill it
 * before main, in any order. Read-only afterwards.
 */
template <class Base, class Key = std::string, class Creator = Base* (*)()>
class APIObjectFactory {
  public:
    static APIObjectFactory& Instance();

    APIObjectFactory(const APIObjectFactory&) = delete;
    APIObjectFactory& operator=(const APIObjectFactory&) = delete;

    /** The last registration of a name wins. */
    void Register(const Key& key, Creator creator) { creators.insert_or_assign(key, creator); }

    /** Returns null for an unknown name. */
    std::unique_ptr<Base> Create(std::string_view key) const {
        const auto found = creators.find(key);
        if (found == creators.end() || found->second == nullptr)
            return nullptr;
        return std::unique_ptr<Base>(found->second());
    }

    /** Returns all names with their creators, in byte order. */
    const std::map<Key, Creator, std::less<>>& GetCreators() const { return creators; }

  private:
    APIObjectFactory() = default;
    std::map<Key, Creator, std::less<>> creators;
};

// One instance per process, even with shared libraries.
template <>
APIObjectFactory<BASEApiObject>& APIObjectFactory<BASEApiObject>::Instance();
template <>
APIObjectFactory<BASEApiMethod>& APIObjectFactory<BASEApiMethod>::Instance();
template <>
APIObjectFactory<BASEApiMethodObject>& APIObjectFactory<BASEApiMethodObject>::Instance();

/** Registers a class. Define one object of this type at file scope per class. */
template <class Base, class Derived, class Key = std::string>
class REGISTERClass {
  public:
    explicit REGISTERClass(const Key& key) { APIObjectFactory<Base, Key>::Instance().Register(key, &Create); }

    /** Returns a new instance, owned by the caller. */
    static Base* Create() { return new Derived; }
};
