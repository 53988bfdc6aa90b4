# The measured queries over the model, each for a line of input that names it: "run NAME" gives the
# size of the result, "answer NAME" the size and then the elements of the result, a line each.
def elements: .packagedElement[].packagedElement[];
def classes: elements | select(.class == "Class");
def operations: elements | .ownedOperation[];

def signature($byId): .name + "("
    + ([.ownedParameter[] | .name + ": " + $byId[.type].name] | join(", ")) + ")";

def closure($byId): [recurse($byId[.generalization[]])][1:] | unique_by(.id)[];

def query($name; $byId):
    if $name == "count" then [classes] | length
    elif $name == "pattern" then [operations | select(.name | test("^[gs]et.*Total$"))]
    elif $name == "prefix" then
        [operations | select(.visibility == "public" and (.name | startswith("get")))] | length
    elif $name == "every" then
        all(classes; any(.ownedOperation[]; .ownedParameter | length > 2))
    elif $name == "signature" then [operations | signature($byId)]
    elif $name == "sorted" then [classes] | sort_by(.name)
    elif $name == "closure" then [classes | closure($byId)]
    elif $name == "path" then
        [classes | select(.isAbstract == "true") | .ownedOperation[]
         | select(.visibility == "public") | .ownedParameter[] | select(.direction == "return")]
    else error("no query " + $name) end;

$model[0] as $root
| (reduce ($root | elements) as $element ({}; .[$element.id] = $element)) as $byId
| (inputs | split(" ")) as [$request, $name]
| ($root | query($name; $byId)) as $result
| if $request == "answer" then
      if $result | type == "array" then ($result | length), ($result[] | .name? // .)
      else 1, $result end
  elif $result | type == "array" then $result | length
  else 1 end
