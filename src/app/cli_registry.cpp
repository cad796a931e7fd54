// recscope-cli registry: the record registry ViewerFile.txt of the home folder.
#include <cstdio>
#include <string>

#include "app/cli_common.h"
#include "record/record_registry.h"
#include "shell/catalogue.h"
#include "shell/home_folder.h"
#include "shell/shared_state.h"

namespace recscope::cli {
namespace {

// A group or file named by its number (1-based) or, failing that, its name.
template <typename List, typename NameOf>
bool FindEntry(const List &list, const std::string &key, NameOf nameOf, std::size_t &at) {
  if (!key.empty() && key.find_first_not_of("0123456789") == std::string::npos) {
    const unsigned long n = std::stoul(key);
    if (n >= 1 && n <= list.size()) {
      at = n - 1;
      return true;
    }
  }
  for (std::size_t i = 0; i < list.size(); ++i)
    if (nameOf(list[i]) == key) {
      at = i;
      return true;
    }
  return false;
}

void Refuse(int id) { throw CatalogueError(id, GetMessageText(id)); }

int RunRegistry(const GlobalOptions &, const std::vector<std::string> &args) {
  if (args.empty())
    return UsageError(
        "registry takes an action: list, add-group, add-file, "
        "delete, move, rename-group, change-file");
  const std::string action = args[0];
  const std::vector<std::string> rest(args.begin() + 1, args.end());
  const std::string path = RegistryPath(Shared().ProgramFolder);
  Registry registry;
  if (const int refused = ReadRegistry(path, registry)) Refuse(refused);
  auto groupName = [](const RegistryGroup &g) { return g.Name; };
  auto fileName = [](const RegistryFile &f) { return f.Name; };
  std::size_t group = 0, file = 0;
  auto needGroup = [&](const std::string &key) {
    if (!FindEntry(registry.Groups, key, groupName, group))
      throw std::invalid_argument("no management group '" + key + "'");
  };
  auto needFile = [&](const std::string &key) {
    if (!FindEntry(registry.Groups[group].Files, key, fileName, file))
      throw std::invalid_argument("no record file '" + key + "' in the group");
  };

  try {
    if (action == "list") {
      if (!rest.empty()) return UsageError("registry list takes no arguments");
      for (std::size_t g = 0; g < registry.Groups.size(); ++g) {
        std::printf("%s\t%s\n", GroupKey(g).c_str(), registry.Groups[g].Name.c_str());
        for (std::size_t f = 0; f < registry.Groups[g].Files.size(); ++f)
          std::printf("%s\t%s\t%s\n", FileKey(g, f).c_str(),
                      registry.Groups[g].Files[f].Name.c_str(),
                      registry.Groups[g].Files[f].Path.c_str());
      }
      return kExitDone;
    }
    if (action == "add-group" || action == "rename-group") {
      const bool add = action == "add-group";
      if (rest.size() != (add ? 1u : 2u))
        return UsageError(add ? "registry add-group NAME" : "registry rename-group GROUP NAME");
      const std::string &name = rest.back();
      if (const int refused = CheckGroupInput(name)) Refuse(refused);
      if (add) {
        if (const int refused = AddRegistryGroup(registry, name)) Refuse(refused);
      } else {
        needGroup(rest[0]);
        registry.Groups[group].Name = name;
      }
    } else if (action == "add-file" || action == "change-file") {
      const bool add = action == "add-file";
      const std::size_t base = add ? 2 : 3;
      if (rest.size() != base && rest.size() != base + 1)
        return UsageError(add ? "registry add-file GROUP FILE [TITLE]"
                              : "registry change-file GROUP ENTRY FILE [TITLE]");
      needGroup(rest[0]);
      if (!add) needFile(rest[1]);
      const std::string address = AbsolutePath(rest[base - 1]);
      const std::string name =
          rest.size() > base ? rest[base] : address.substr(address.find_last_of('/') + 1);
      if (const int refused = CheckFileInput(name, address)) Refuse(refused);
      if (add) {
        if (const int refused = AddRegistryFile(registry, group, name, address)) Refuse(refused);
      } else {
        registry.Groups[group].Files[file] = {name, address};
      }
    } else if (action == "delete") {
      if (rest.size() != 1 && rest.size() != 2) return UsageError("registry delete GROUP [ENTRY]");
      needGroup(rest[0]);
      if (rest.size() == 1) {
        DeleteRegistryGroup(registry, group);
      } else {
        needFile(rest[1]);
        DeleteRegistryFile(registry, group, file);
      }
    } else if (action == "move") {
      if (rest.size() != 2 && rest.size() != 3)
        return UsageError("registry move GROUP [ENTRY] up|down");
      const std::string &way = rest.back();
      if (way != "up" && way != "down") return UsageError("registry move ends in up or down");
      needGroup(rest[0]);
      if (rest.size() == 2) {
        MoveRegistryGroup(registry, group, way == "up");
      } else {
        needFile(rest[1]);
        MoveRegistryFile(registry, group, file, way == "up");
      }
    } else {
      return UsageError("unknown registry action '" + action + "'");
    }
  } catch (const std::invalid_argument &e) {
    return UsageError(e.what());
  }
  if (!WriteRegistry(path, registry)) Refuse(11107);
  return kExitDone;
}

const Registration kRegistry({
    "registry",
    "list and change the record registry ViewerFile.txt",
    "Usage: recscope-cli registry ACTION ...\n"
    "\n"
    "The record registry of the home folder (ViewerFile.txt, created empty when\n"
    "missing), as the management group and record file windows keep it. GROUP and\n"
    "ENTRY are numbers from 1 in list order or the exact name.\n"
    "\n"
    "  list                              groups as 'NNN<TAB>NAME', their files as\n"
    "                                    'NNNFFF<TAB>NAME<TAB>PATH'\n"
    "  add-group NAME                    a new group at the end (at most 30)\n"
    "  rename-group GROUP NAME\n"
    "  add-file GROUP FILE [TITLE]       a record file at the end of the group (at\n"
    "                                    most 400 over all groups); TITLE defaults\n"
    "                                    to the file's name\n"
    "  change-file GROUP ENTRY FILE [TITLE]\n"
    "  delete GROUP [ENTRY]              the group with its entries, or one entry;\n"
    "                                    the record files stay on the disk\n"
    "  move GROUP [ENTRY] up|down        swap with the neighbour; nothing at the ends\n"
    "\n"
    "Names are tested as the entry window does: exit 2 with 41056, 41057, 41058,\n"
    "41059 (a name of more than 128 bytes in code page 932), 41060 (an address of\n"
    "more than 127 characters), 41050 (30 groups), 41053 (400 files), 11107 (the\n"
    "file cannot be read or written). The whole file is rewritten after a change.\n",
    RunRegistry,
});

}  // namespace
}  // namespace recscope::cli
