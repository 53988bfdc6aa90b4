#include "ProductQueries.h"

#include <map>

const std::string& productQuery(const std::string& name) {
    static const std::map<std::string, std::string> queries = {
        {"count", R"q(size (all "Class"))q"},
        {"pattern", R"q(filter {$name ~= "^[gs]et.*Total$"} over all "Operation")q"},
        {"prefix",
         R"q(size (filter {$name ~= "^get" and $visibility = "public"} over all "Operation"))q"},
        {"every", R"q(for_all c in all "Class" => (there_exists o in c -> [ownedOperation] => )q"
                  R"q(size (o -> [ownedParameter]) > 2))q"},
        {"signature",
         R"q($name + "(" + comma map {$name + ": " + $type} over [ownedParameter] + ")")q"},
        {"sorted", R"q(sort {$name} over all "Class")q"},
        {"closure", R"q(traverse {up:[generalization] -> ^[general] -> @up} over all "Class")q"},
        {"path", R"q([packagedElement] -> [packagedElement]{class current = "Class" and )q"
                 R"q($isAbstract = "true"} -> [ownedOperation]{$visibility = "public"} -> )q"
                 R"q([ownedParameter]{$direction = "return"})q"}};
    return queries.at(name);
}

bool isObjectQuery(const std::string& name) {
    return name == "pattern" || name == "sorted" || name == "closure" || name == "path";
}
