; What is declared.
(function_definition name: (_) @name body: (_) @body) @function
(class_definition name: (_) @name body: (_) @body) @class
(assignment left: (identifier) @name) @binding
(assignment left: (pattern_list (identifier) @name)) @binding
(assignment left: (tuple_pattern (identifier) @name)) @binding
(assignment left: (attribute object: (identifier) attribute: (_) @name)) @declaration
(assignment left: (pattern_list (attribute object: (identifier) attribute: (_) @name))) @declaration
(assignment left: (tuple_pattern (attribute object: (identifier) attribute: (_) @name))) @declaration
(assignment left: (_ (list_splat_pattern (attribute object: (identifier) attribute: (_) @name)))) @declaration
(assignment left: (attribute object: (identifier) @self attribute: (_) @name) (#eq? @self "self")) @attribute
(type_alias_statement . (type [(identifier) @name (generic_type . (identifier) @name)])) @binding @type

; What stands in a class.
(class_definition body: (block [
  (function_definition) @method
  (decorated_definition (function_definition) @method)
  (expression_statement (assignment) @attribute)
  (if_statement [
    (block [(function_definition) @method (decorated_definition (function_definition) @method)])
    (else_clause (block [(function_definition) @method (decorated_definition (function_definition) @method)]))
  ])
]))
(function_definition name: (_) @called (#eq? @called "__init__")) @constructor

; What belongs to the declaration in it.
(decorated_definition) @wrapper

; What a name holds.
(assignment right: (_) @value) @of
(assignment right: (lambda)) @callable

; The docstring.
(function_definition body: (block . (expression_statement (string) @docstring))) @of
(class_definition body: (block . (expression_statement (string) @docstring))) @of

; What is public.
(assignment left: (identifier) @list (#eq? @list "__all__"))
(assignment left: (identifier) @list right: [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
    (binary_operator (list (string (string_content) @export)))
  ] (#eq? @list "__all__"))
(augmented_assignment left: (identifier) @list right: [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
  ] (#eq? @list "__all__"))
(call
  function: (attribute object: (identifier) @list)
  arguments: (argument_list [
    (list (string (string_content) @export))
    (tuple (string (string_content) @export))
    (string (string_content) @export)
  ])
  (#eq? @list "__all__"))

(function_definition body: (_) @local)

(comment) @comment

; What the file has from other modules. All names of a module are there for others.
(import_statement name: (dotted_name . (identifier) @passed @from))
(import_statement name: (aliased_import name: (_) @from alias: (_) @passed))
(import_from_statement module_name: (_) @from name: (dotted_name (identifier) @passed @original))
(import_from_statement
  module_name: (_) @from name: (aliased_import name: (dotted_name (identifier) @original) alias: (_) @passed))
(import_from_statement module_name: (_) @all (wildcard_import))

; What a class says that it has.
(class_definition body: (block (expression_statement (assignment left: (identifier) @slots right: [
    (tuple (string (string_content) @slot))
    (list (string (string_content) @slot))
    (string (string_content) @slot)
  ]))) (#eq? @slots "__slots__"))

; Where its names mean what.
(function_definition parameters: (_) @scope body: (_) @scope)
(lambda body: (_) @scope)
(lambda parameters: (_) @scope body: (_) @scope)
[(list_comprehension) (set_comprehension) (dictionary_comprehension) (generator_expression)] @scope
(class_definition body: (_) @members)
(parameters (identifier) @bound)
(lambda_parameters (identifier) @bound)
(default_parameter name: (identifier) @bound)
(typed_parameter (identifier) @bound)
(typed_default_parameter name: (_) @bound)
(list_splat_pattern (identifier) @bound)
(dictionary_splat_pattern (identifier) @bound)
(assignment left: (identifier) @bound)
(augmented_assignment left: (identifier) @bound)
(named_expression name: (_) @bound)
(pattern_list (identifier) @bound)
(tuple_pattern (identifier) @bound)
(list_pattern (identifier) @bound)
(for_statement left: (identifier) @bound)
(for_in_clause left: (identifier) @bound)
(as_pattern_target (identifier) @bound)
(function_definition name: (_) @bound)
(class_definition name: (_) @bound)
(identifier) @mention
(attribute attribute: (_) @unmentioned)
(keyword_argument name: (_) @unmentioned)
(dotted_name (identifier) @unmentioned)
(aliased_import alias: (_) @unmentioned)
