-- The measured queries as functions over tables, which `package_` and `element` collect and
-- `resolve` ties together. An answer is a number, a boolean, or a list of objects or texts.
packages, elements, classes, operations = {}, {}, {}, {}
local byId = {}

function package_(package)
  package.packagedElement = {}
  packages[#packages + 1] = package
end

function element(object)
  local siblings = packages[#packages].packagedElement
  siblings[#siblings + 1] = object
  elements[#elements + 1] = object
  byId[object.id] = object
end

function resolve()
  for _, object in ipairs(elements) do
    if object.class == "Class" then classes[#classes + 1] = object end
    for i, id in ipairs(object.generalization) do object.generalization[i] = byId[id] end
    for _, operation in ipairs(object.ownedOperation) do
      operations[#operations + 1] = operation
      for _, parameter in ipairs(operation.ownedParameter) do
        parameter.type = byId[parameter.type]
      end
    end
  end
end

queries = {}

function queries.count()
  local count = 0
  for _, object in ipairs(elements) do
    if object.class == "Class" then count = count + 1 end
  end
  return count
end

function queries.pattern()
  local find = string.find
  local found = {}
  for _, operation in ipairs(operations) do
    if find(operation.name, "^[gs]et.*Total$") then found[#found + 1] = operation end
  end
  return found
end

function queries.prefix()
  local sub = string.sub
  local count = 0
  for _, operation in ipairs(operations) do
    if operation.visibility == "public" and sub(operation.name, 1, 3) == "get" then
      count = count + 1
    end
  end
  return count
end

local function hasLongOperation(class)
  for _, operation in ipairs(class.ownedOperation) do
    if #operation.ownedParameter > 2 then return true end
  end
  return false
end

function queries.every()
  for _, class in ipairs(classes) do
    if not hasLongOperation(class) then return false end
  end
  return true
end

function queries.signature()
  local concat = table.concat
  local texts = {}
  for _, operation in ipairs(operations) do
    local parts = {}
    for _, parameter in ipairs(operation.ownedParameter) do
      parts[#parts + 1] = parameter.name .. ": " .. parameter.type.name
    end
    texts[#texts + 1] = operation.name .. "(" .. concat(parts, ", ") .. ")"
  end
  return texts
end

function queries.sorted()
  local sorted = {}
  for i, class in ipairs(classes) do sorted[i] = class end
  table.sort(sorted, function(a, b) return a.name < b.name end)
  return sorted
end

function queries.closure()
  local result = {}
  for _, class in ipairs(classes) do
    local seen, from, next = {}, class, #result + 1
    while from do
      for _, general in ipairs(from.generalization) do
        if not seen[general] then
          seen[general] = true
          result[#result + 1] = general
        end
      end
      from = result[next]
      next = next + 1
    end
  end
  return result
end

function queries.path()
  local found = {}
  for _, package in ipairs(packages) do
    for _, class in ipairs(package.packagedElement) do
      if class.class == "Class" and class.isAbstract == "true" then
        for _, operation in ipairs(class.ownedOperation) do
          if operation.visibility == "public" then
            for _, parameter in ipairs(operation.ownedParameter) do
              if parameter.direction == "return" then found[#found + 1] = parameter end
            end
          end
        end
      end
    end
  end
  return found
end

function condition(operation) return operation.visibility == "public" end

-- What the function of a query answers, a line an element.
function answer(query)
  local result = query()
  if type(result) ~= "table" then return tostring(result) .. "\n" end
  local lines = {}
  for i, value in ipairs(result) do lines[i] = (type(value) == "table" and value.name or value) .. "\n" end
  return table.concat(lines)
end
